#pragma once

// Scratch folders and small sound files for the renderer's tests.

#include <sndfile.h>

#include <string>
#include <vector>

namespace render_test {

// Names of everything in a folder, hidden files included, sorted.
std::vector<std::string> ListFolder(const std::string& path);

// A fresh folder under the system's temporary folder, removed with everything in it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& Path() const { return mPath; }
  std::string File(const std::string& name) const { return mPath + "/" + name; }
  std::vector<std::string> List() const { return ListFolder(mPath); }

 private:
  std::string mPath;
};

// Makes a folder the working folder for as long as it lives.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& path);
  ~WorkingFolder();

 private:
  std::string mPrevious;
};

struct Sound {
  int nChannels = 0;
  int sampleRate = 0;
  int format = 0;
  std::vector<float> samples;  // interleaved
  long long NFrames() const {
    return nChannels ? static_cast<long long>(samples.size()) / nChannels : 0;
  }
};

// Writes interleaved samples; the format defaults to 16-bit WAV.
void WriteSound(const std::string& path, const Sound& sound,
                int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16);
Sound ReadSound(const std::string& path);
std::vector<unsigned char> ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::vector<unsigned char>& bytes);
// Everything waiting in a pipe opened without blocking, read without waiting for more.
std::vector<unsigned char> Drain(int fd);

}  // namespace render_test
