#include <gtest/gtest.h>
#include <unistd.h>

#include "OutputPath.h"
#include "RenderTestFiles.h"

using render::DefaultOutputPath;
using render::SameFile;

TEST(OutputPath, DefaultIsTheInputStemInTheWorkingFolder) {
  EXPECT_EQ(DefaultOutputPath("song.wav"), "song-tarn.wav");
  EXPECT_EQ(DefaultOutputPath("/music/take.2.flac"), "take.2-tarn.wav");
  EXPECT_EQ(DefaultOutputPath("../a/b/voice"), "voice-tarn.wav");
  EXPECT_EQ(DefaultOutputPath(""), "tarn-demo.wav");
}

TEST(OutputPath, SpellingsOfOnePathAreTheSameFileWhetherOrNotItExists) {
  render_test::TempDir dir;
  render_test::WorkingFolder here(dir.Path());
  EXPECT_TRUE(SameFile("./a.wav", "a.wav"));
  EXPECT_TRUE(SameFile("sub/../a.wav", dir.Path() + "/a.wav"));
  EXPECT_FALSE(SameFile("a.wav", "b.wav"));
  render_test::WriteBytes("a.wav", {1, 2, 3});
  EXPECT_TRUE(SameFile("./a.wav", "a.wav"));
  EXPECT_FALSE(SameFile("a.wav", "a.wav.bak"));
}

TEST(OutputPath, LinksToAFileAreThatFile) {
  render_test::TempDir dir;
  render_test::WriteBytes(dir.File("a.wav"), {1, 2, 3});
  ASSERT_EQ(symlink(dir.File("a.wav").c_str(), dir.File("soft.wav").c_str()), 0);
  ASSERT_EQ(link(dir.File("a.wav").c_str(), dir.File("hard.wav").c_str()), 0);
  EXPECT_TRUE(SameFile(dir.File("soft.wav"), dir.File("a.wav")));
  EXPECT_TRUE(SameFile(dir.File("hard.wav"), dir.File("a.wav")));
  // A link to a file not there yet is that file too, once it is written through the link.
  ASSERT_EQ(symlink("new.wav", dir.File("dangling.wav").c_str()), 0);
  ASSERT_EQ(symlink("dangling.wav", dir.File("chain.wav").c_str()), 0);
  EXPECT_TRUE(SameFile(dir.File("chain.wav"), dir.File("new.wav")));
}
