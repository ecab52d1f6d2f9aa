#include "StateFile.h"

#include "RenderTestFiles.h"

#include <gtest/gtest.h>

using render::ReadStateFile;
using render_test::TempDir;

TEST(StateFile, ReadsAFileOfExactlyTheStateSize) {
  TempDir dir;
  std::vector<unsigned char> bytes(64);
  for (int i = 0; i < 64; ++i) bytes[i] = static_cast<unsigned char>(i * 3);
  render_test::WriteBytes(dir.File("s.state"), bytes);
  std::vector<unsigned char> read;
  std::string error;
  ASSERT_TRUE(ReadStateFile(dir.File("s.state"), 64, &read, &error)) << error;
  EXPECT_EQ(read, bytes);
}

TEST(StateFile, RefusesOtherSizesNamingFileAndSizes) {
  TempDir dir;
  for (std::size_t size : {0u, 63u, 65u, 640u}) {
    render_test::WriteBytes(dir.File("s.state"), std::vector<unsigned char>(size, 7));
    std::vector<unsigned char> read = {1};
    std::string error;
    EXPECT_FALSE(ReadStateFile(dir.File("s.state"), 64, &read, &error));
    EXPECT_NE(error.find("\"" + dir.File("s.state") + "\""), std::string::npos) << error;
    EXPECT_NE(error.find(" " + std::to_string(size) + " bytes"), std::string::npos) << error;
    EXPECT_NE(error.find("64 bytes"), std::string::npos) << error;
    EXPECT_EQ(read, std::vector<unsigned char>{1});  // untouched
  }
}

TEST(StateFile, RefusesMissingFilesAndFolders) {
  TempDir dir;
  std::vector<unsigned char> read;
  std::string error;
  EXPECT_FALSE(ReadStateFile(dir.File("none.state"), 64, &read, &error));
  EXPECT_NE(error.find("none.state"), std::string::npos) << error;
  EXPECT_FALSE(ReadStateFile(dir.Path(), 64, &read, &error));
  EXPECT_NE(error.find("folder"), std::string::npos) << error;
}
