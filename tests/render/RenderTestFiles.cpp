#include "RenderTestFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace render_test {

namespace fs = std::filesystem;

TempDir::TempDir() {
  std::string pattern = (fs::temp_directory_path() / "tarn-render-test-XXXXXX").string();
  const char* made = mkdtemp(pattern.data());
  EXPECT_NE(made, nullptr);
  mPath = made ? made : "";
}

TempDir::~TempDir() {
  std::error_code ec;
  if (!mPath.empty()) fs::remove_all(mPath, ec);
}

std::vector<std::string> ListFolder(const std::string& path) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

WorkingFolder::WorkingFolder(const std::string& path) : mPrevious(fs::current_path().string()) {
  fs::current_path(path);
}

WorkingFolder::~WorkingFolder() { fs::current_path(mPrevious); }

void WriteSound(const std::string& path, const Sound& sound, int format) {
  SF_INFO info{};
  info.channels = sound.nChannels;
  info.samplerate = sound.sampleRate;
  info.format = format;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
  EXPECT_EQ(sf_writef_float(file, sound.samples.data(), sound.NFrames()), sound.NFrames());
  sf_close(file);
}

Sound ReadSound(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  Sound sound;
  EXPECT_NE(file, nullptr) << path << ": " << sf_strerror(nullptr);
  if (!file) return sound;
  sound.nChannels = info.channels;
  sound.sampleRate = info.samplerate;
  sound.format = info.format;
  sound.samples.resize(static_cast<std::size_t>(info.frames) * info.channels);
  EXPECT_EQ(sf_readf_float(file, sound.samples.data(), info.frames), info.frames);
  sf_close(file);
  return sound;
}

std::vector<unsigned char> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<unsigned char>(std::istreambuf_iterator<char>(in),
                                    std::istreambuf_iterator<char>());
}

void WriteBytes(const std::string& path, const std::vector<unsigned char>& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

std::vector<unsigned char> Drain(int fd) {
  std::vector<unsigned char> bytes;
  unsigned char buffer[4096];
  for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;) {
    bytes.insert(bytes.end(), buffer, buffer + n);
  }
  return bytes;
}

}  // namespace render_test
