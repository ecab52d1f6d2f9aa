#include <fcntl.h>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FloatWavWriter.h"
#include "RenderTestFiles.h"

using render::FloatWavWriter;
using render_test::Sound;
using render_test::TempDir;

namespace {

// Beyond full scale and tiny values too, which a float file keeps as they are.
const Sound kStereo = {2, 44100, 0, {0.5f, -0.25f, 1.5f, -2.0f, 1e-9f, 0.0f}};
const Sound kEmpty = {1, 48000, 0, {}};

// The renderer's file written by libsndfile onto a regular file, seeking as it likes.
void WriteReference(const std::string& path, const Sound& sound) {
  SF_INFO info{};
  info.channels = sound.nChannels;
  info.samplerate = sound.sampleRate;
  info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
  sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  sf_writef_float(file, sound.samples.data(), sound.NFrames());
  sf_close(file);
}

std::unique_ptr<FloatWavWriter> Start(const std::string& path, const Sound& sound) {
  std::string error;
  auto writer =
      FloatWavWriter::Create(path, sound.nChannels, sound.sampleRate, sound.NFrames(), &error);
  EXPECT_TRUE(writer) << error;
  return writer;
}

// Writes the frames one and then the rest, as the render loop writes blocks.
bool WriteAll(FloatWavWriter& writer, const Sound& sound, std::string* error) {
  const long long first = std::min(1LL, sound.NFrames());
  return writer.Write(sound.samples.data(), first, error) &&
         writer.Write(sound.samples.data() + first * sound.nChannels, sound.NFrames() - first,
                      error);
}

}  // namespace

// The header sent ahead of the samples is libsndfile's own, as it ends a file it can seek in.
TEST(FloatWavWriter, WritesTheBytesLibsndfileWritesToAFile) {
  for (const Sound& sound : {kStereo, kEmpty}) {
    TempDir dir;
    WriteReference(dir.File("reference.wav"), sound);
    auto writer = Start(dir.File("out.wav"), sound);
    std::string error;
    ASSERT_TRUE(WriteAll(*writer, sound, &error)) << error;
    ASSERT_TRUE(writer->Commit(&error)) << error;
    EXPECT_EQ(render_test::ReadBytes(dir.File("out.wav")),
              render_test::ReadBytes(dir.File("reference.wav")))
        << sound.NFrames() << " frames";
    EXPECT_EQ(dir.List(), (std::vector<std::string>{"out.wav", "reference.wav"}));
  }
}

// A FIFO gets the same bytes as a file, front to back: header and samples as they are written,
// the header only on Commit when there are no samples. The reading end is opened read-write, so
// that neither side waits for the other.
TEST(FloatWavWriter, StreamsToAFifoTheBytesOfAFile) {
  for (const Sound& sound : {kStereo, kEmpty}) {
    TempDir dir;
    auto fileWriter = Start(dir.File("file.wav"), sound);
    std::string error;
    ASSERT_TRUE(WriteAll(*fileWriter, sound, &error) && fileWriter->Commit(&error)) << error;
    const std::vector<unsigned char> fileBytes = render_test::ReadBytes(dir.File("file.wav"));
    ASSERT_EQ(mkfifo(dir.File("out.fifo").c_str(), 0644), 0);
    const int reader = open(dir.File("out.fifo").c_str(), O_RDWR | O_NONBLOCK);
    auto writer = Start(dir.File("out.fifo"), sound);
    ASSERT_TRUE(WriteAll(*writer, sound, &error)) << error;
    std::vector<unsigned char> streamed = render_test::Drain(reader);
    EXPECT_EQ(streamed.empty(), sound.NFrames() == 0);
    ASSERT_TRUE(writer->Commit(&error)) << error;
    const std::vector<unsigned char> atCommit = render_test::Drain(reader);
    streamed.insert(streamed.end(), atCommit.begin(), atCommit.end());
    close(reader);
    EXPECT_EQ(streamed, fileBytes);
    render_test::WriteBytes(dir.File("copy.wav"), streamed);
    const Sound copy = render_test::ReadSound(dir.File("copy.wav"));
    EXPECT_EQ(copy.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(copy.nChannels, sound.nChannels);
    EXPECT_EQ(copy.sampleRate, sound.sampleRate);
    EXPECT_EQ(copy.samples, sound.samples);
  }
}

TEST(FloatWavWriter, UncommittedWriterLeavesNothing) {
  TempDir dir;
  {
    auto writer = Start(dir.File("out.wav"), kStereo);
    std::string error;
    WriteAll(*writer, kStereo, &error);
  }
  EXPECT_TRUE(dir.List().empty());
}

// The header gives the length before the samples come, so a file is refused rather than left
// with a header that is wrong: longer than the 32-bit RIFF size can say (libsndfile would let it
// wrap around), or shorter than announced. The RIFF size counts the header too, less its first 8
// bytes: with libsndfile's header of some 90 bytes, 4 GiB less 128 bytes of stereo samples fit
// and 4 GiB less 64 bytes do not.
TEST(FloatWavWriter, NeverLeavesAFileWhoseHeaderIsWrong) {
  TempDir dir;
  std::string error;
  EXPECT_TRUE(FloatWavWriter::Create(dir.File("out.wav"), 2, 48000, (1LL << 29) - 16, &error))
      << error;
  EXPECT_FALSE(FloatWavWriter::Create(dir.File("out.wav"), 2, 48000, (1LL << 29) - 8, &error));
  EXPECT_NE(error.find("\"" + dir.File("out.wav") + "\""), std::string::npos) << error;
  EXPECT_NE(error.find("more than a WAV file holds"), std::string::npos) << error;
  auto writer = FloatWavWriter::Create(dir.File("out.wav"), 1, 48000, 4, &error);
  ASSERT_TRUE(writer) << error;
  const float samples[3] = {};
  ASSERT_TRUE(writer->Write(samples, 3, &error)) << error;
  EXPECT_FALSE(writer->Commit(&error));
  EXPECT_NE(error.find("3 frames"), std::string::npos) << error;
  writer.reset();
  EXPECT_TRUE(dir.List().empty());
}
