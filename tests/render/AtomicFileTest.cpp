#include <gtest/gtest.h>
#include <sys/stat.h>

#include "AtomicFile.h"
#include "FloatWavWriter.h"
#include "RenderTestFiles.h"

using render::AtomicFile;
using render::FloatWavWriter;
using render_test::TempDir;

namespace {

const std::vector<unsigned char> kOld = {'o', 'l', 'd'};
const std::vector<unsigned char> kNew = {'n', 'e', 'w', '!'};

}  // namespace

TEST(AtomicFile, CommittedFileAppearsWholeAndAlone) {
  TempDir dir;
  std::string error;
  auto file = AtomicFile::Create(dir.File("out.bin"), &error);
  ASSERT_TRUE(file) << error;
  ASSERT_TRUE(file->Write(kNew.data(), kNew.size(), &error)) << error;
  EXPECT_EQ(dir.List().size(), 1u);  // only the temporary file so far
  EXPECT_NE(dir.List()[0], "out.bin");
  ASSERT_TRUE(file->Commit(&error)) << error;
  EXPECT_EQ(dir.List(), std::vector<std::string>{"out.bin"});
  EXPECT_EQ(render_test::ReadBytes(dir.File("out.bin")), kNew);
}

TEST(AtomicFile, UncommittedFileLeavesNothing) {
  TempDir dir;
  std::string error;
  {
    auto file = AtomicFile::Create(dir.File("out.bin"), &error);
    ASSERT_TRUE(file) << error;
    ASSERT_TRUE(file->Write(kNew.data(), kNew.size(), &error));
  }
  EXPECT_TRUE(dir.List().empty());
}

TEST(AtomicFile, ExistingFileIsReplacedOnlyOnCommit) {
  TempDir dir;
  render_test::WriteBytes(dir.File("out.bin"), kOld);
  std::string error;
  {
    auto file = AtomicFile::Create(dir.File("out.bin"), &error);
    ASSERT_TRUE(file);
    file->Write(kNew.data(), kNew.size(), &error);
  }
  EXPECT_EQ(render_test::ReadBytes(dir.File("out.bin")), kOld);
  EXPECT_EQ(dir.List(), std::vector<std::string>{"out.bin"});
  auto file = AtomicFile::Create(dir.File("out.bin"), &error);
  file->Write(kNew.data(), kNew.size(), &error);
  ASSERT_TRUE(file->Commit(&error));
  EXPECT_EQ(render_test::ReadBytes(dir.File("out.bin")), kNew);
}

TEST(AtomicFile, CommittedFileHasTheUsualPermissions) {
  TempDir dir;
  const mode_t previous = umask(022);
  std::string error;
  auto file = AtomicFile::Create(dir.File("out.bin"), &error);
  ASSERT_TRUE(file->Commit(&error));
  umask(previous);
  struct stat st {};
  ASSERT_EQ(stat(dir.File("out.bin").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0644u);
}

TEST(AtomicFile, UnwritableTargetsAreRefusedNamingThem) {
  TempDir dir;
  std::string error;
  EXPECT_FALSE(AtomicFile::Create(dir.File("missing/out.bin"), &error));
  EXPECT_NE(error.find(dir.File("missing/out.bin")), std::string::npos) << error;
  render_test::WriteBytes(dir.File("plain"), kOld);
  EXPECT_FALSE(AtomicFile::Create(dir.File("plain/out.bin"), &error));  // parent is a file
  EXPECT_FALSE(AtomicFile::Create(dir.Path(), &error));                 // the target is a folder
  EXPECT_NE(error.find("folder"), std::string::npos) << error;
  EXPECT_EQ(dir.List(), std::vector<std::string>{"plain"});
}

TEST(FloatWavWriter, WritesThirtyTwoBitFloatWav) {
  TempDir dir;
  std::string error;
  auto writer = FloatWavWriter::Create(dir.File("out.wav"), 2, 44100, 3, &error);
  ASSERT_TRUE(writer) << error;
  const std::vector<float> samples = {0.5f, -0.25f, 1.5f, -2.0f, 1e-9f, 0.0f};
  ASSERT_TRUE(writer->Write(samples.data(), 3, &error)) << error;
  ASSERT_TRUE(writer->Commit(&error)) << error;
  const render_test::Sound sound = render_test::ReadSound(dir.File("out.wav"));
  EXPECT_EQ(sound.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  EXPECT_EQ(sound.nChannels, 2);
  EXPECT_EQ(sound.sampleRate, 44100);
  EXPECT_EQ(sound.samples, samples);  // float survives unchanged, beyond full scale too
  EXPECT_EQ(dir.List(), std::vector<std::string>{"out.wav"});
}

TEST(FloatWavWriter, UncommittedWriterLeavesNothing) {
  TempDir dir;
  std::string error;
  {
    auto writer = FloatWavWriter::Create(dir.File("out.wav"), 1, 48000, 4, &error);
    const float samples[4] = {};
    writer->Write(samples, 4, &error);
  }
  EXPECT_TRUE(dir.List().empty());
}

// The header gives the length before the samples come, so a file is refused rather than left
// with a header that is wrong: longer than WAV sizes can say, or shorter than announced.
TEST(FloatWavWriter, NeverLeavesAFileWhoseHeaderIsWrong) {
  TempDir dir;
  std::string error;
  EXPECT_FALSE(FloatWavWriter::Create(dir.File("out.wav"), 2, 48000, 1LL << 29, &error));  // 4 GiB
  EXPECT_NE(error.find(dir.File("out.wav")), std::string::npos) << error;
  auto writer = FloatWavWriter::Create(dir.File("out.wav"), 1, 48000, 4, &error);
  ASSERT_TRUE(writer) << error;
  const float samples[3] = {};
  ASSERT_TRUE(writer->Write(samples, 3, &error)) << error;
  EXPECT_FALSE(writer->Commit(&error));
  EXPECT_NE(error.find("3 frames"), std::string::npos) << error;
  writer.reset();
  EXPECT_TRUE(dir.List().empty());
}
