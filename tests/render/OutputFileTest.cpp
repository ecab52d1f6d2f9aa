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

TEST(OutputFile, UnwritableTargetsAreRefusedNamingThem) {
  TempDir dir;
  render_test::WriteBytes(dir.File("plain"), kOld);
  ASSERT_EQ(mkdir(dir.File("folder").c_str(), 0755), 0);
  ASSERT_EQ(symlink("loop", dir.File("loop").c_str()), 0);
  const int socketFd = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", dir.File("socket").c_str());
  ASSERT_EQ(bind(socketFd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  const struct {
    std::string path;
    const char* why;
  } cases[] = {
      {dir.File("missing/out.bin"), "No such file"},
      {dir.File("plain/out.bin"), "Not a directory"},
      {dir.File("folder"), "is a folder"},
      {dir.File("loop"), "symbolic links"},
      {dir.File("socket"), "neither a file, a character device nor a FIFO"},
  };
  for (const auto& c : cases) {
    std::string error;
    EXPECT_FALSE(OutputFile::Open(c.path, &error));
    EXPECT_NE(error.find("\"" + c.path + "\""), std::string::npos) << error;
    EXPECT_NE(error.find(c.why), std::string::npos) << error;
  }
  close(socketFd);
  EXPECT_EQ(dir.List(), (std::vector<std::string>{"folder", "loop", "plain", "socket"}));
}

// The kind is decided by looking only, so /dev/null is looked at and never written here.
TEST(OutputKind, DevicesAndFifosAreStreamsRegularAndNewFilesAreFiles) {
  TempDir dir;
  ASSERT_EQ(mkfifo(dir.File("fifo").c_str(), 0644), 0);
  render_test::WriteBytes(dir.File("file"), kOld);
  ASSERT_EQ(symlink("/dev/null", dir.File("null-link").c_str()), 0);
  ASSERT_EQ(symlink("missing", dir.File("dangling").c_str()), 0);
  const struct {
    std::string path;
    OutputKind kind;
  } cases[] = {
      {"/dev/null", OutputKind::kStream},       {dir.File("null-link"), OutputKind::kStream},
      {dir.File("fifo"), OutputKind::kStream},  {dir.File("file"), OutputKind::kFile},
      {dir.File("missing"), OutputKind::kFile}, {dir.File("dangling"), OutputKind::kFile},
      {dir.Path(), OutputKind::kFolder},
  };
  for (const auto& c : cases) EXPECT_EQ(KindOfOutput(c.path), c.kind) << c.path;
}
