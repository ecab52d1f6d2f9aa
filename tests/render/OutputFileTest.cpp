#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>

#include "AtomicFile.h"
#include "OutputKind.h"
#include "RenderTestFiles.h"

using render::AtomicFile;
using render::KindOfOutput;
using render::OutputFile;
using render::OutputKind;
using render_test::ReadBytes;
using render_test::TempDir;

namespace {

const std::vector<unsigned char> kOld = {'o', 'l', 'd'};
const std::vector<unsigned char> kNew = {'n', 'e', 'w', '!'};

}  // namespace

// Written beside the target, which changes only on Commit, whole and with the usual permissions.
TEST(AtomicFile, ReplacesTheTargetOnlyOnCommit) {
  TempDir dir;
  const std::string out = dir.File("out.bin");
  render_test::WriteBytes(out, kOld);
  const mode_t previous = umask(022);
  for (bool commit : {false, true}) {
    std::string error;
    auto file = AtomicFile::Create(out, &error);
    ASSERT_TRUE(file && file->Write(kNew.data(), kNew.size(), &error)) << error;
    EXPECT_EQ(dir.List().size(), 2u);
    EXPECT_EQ(ReadBytes(out), kOld);
    EXPECT_TRUE(!commit || file->Commit(&error)) << error;
    file.reset();
    EXPECT_EQ(dir.List(), std::vector<std::string>{"out.bin"});
    EXPECT_EQ(ReadBytes(out), commit ? kNew : kOld);
  }
  umask(previous);
  struct stat st {};
  ASSERT_EQ(stat(out.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0644u);
}

// Linux follows 40 links in a path and no more; so does the renderer.
TEST(AtomicFile, FollowsAChainOfFortyLinks) {
  TempDir dir;
  for (int i = 1; i <= 41; ++i) {
    ASSERT_EQ(symlink(std::to_string(i - 1).c_str(), dir.File(std::to_string(i)).c_str()), 0);
  }
  std::string error;
  auto file = AtomicFile::Create(dir.File("40"), &error);
  ASSERT_TRUE(file && file->Commit(&error)) << error;
  EXPECT_EQ(ReadBytes(dir.File("0")), std::vector<unsigned char>{});
  EXPECT_FALSE(OutputFile::Open(dir.File("41"), &error));
  EXPECT_NE(error.find("symbolic links"), std::string::npos) << error;
}

// What a path names decides how it is written; what cannot be written is refused, naming it.
// /dev/null is looked at and never written here.
TEST(OutputFile, KindsOfOutputAndTheUnwritable) {
  TempDir dir;
  render_test::WriteBytes(dir.File("plain"), kOld);
  ASSERT_EQ(mkdir(dir.File("folder").c_str(), 0755), 0);
  ASSERT_EQ(mkfifo(dir.File("fifo").c_str(), 0644), 0);
  ASSERT_EQ(symlink("loop", dir.File("loop").c_str()), 0);
  ASSERT_EQ(symlink("/dev/null", dir.File("null-link").c_str()), 0);
  ASSERT_EQ(symlink("missing", dir.File("dangling").c_str()), 0);
  const int socketFd = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", dir.File("socket").c_str());
  ASSERT_EQ(bind(socketFd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  const struct {
    std::string path;
    OutputKind kind;
    const char* refusal;  // null for outputs that can be written
  } cases[] = {
      {"/dev/null", OutputKind::kStream, nullptr},
      {dir.File("null-link"), OutputKind::kStream, nullptr},
      {dir.File("fifo"), OutputKind::kStream, nullptr},
      {dir.File("plain"), OutputKind::kFile, nullptr},
      {dir.File("dangling"), OutputKind::kFile, nullptr},
      {dir.File("missing/out.bin"), OutputKind::kFile, "No such file"},
      {dir.File("plain/out.bin"), OutputKind::kFile, "Not a directory"},
      {dir.File("loop"), OutputKind::kFile, "symbolic links"},
      {dir.File("folder"), OutputKind::kFolder, "is a folder"},
      {dir.File("socket"), OutputKind::kOther, "neither a file, a character device nor a FIFO"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(KindOfOutput(c.path), c.kind) << c.path;
    if (!c.refusal) continue;
    std::string error;
    EXPECT_FALSE(OutputFile::Open(c.path, &error));
    EXPECT_NE(error.find("\"" + c.path + "\""), std::string::npos) << error;
    EXPECT_NE(error.find(c.refusal), std::string::npos) << error;
  }
  close(socketFd);
  EXPECT_EQ(dir.List().size(), 7u);
}
