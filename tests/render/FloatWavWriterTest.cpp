#include <fcntl.h>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include "AtomicFile.h"
#include "FloatWavWriter.h"
#include "HeaderFirstStream.h"
#include "RenderTestFiles.h"

using render::FloatWavWriter;
using render_test::ReadBytes;
using render_test::Sound;
using render_test::TempDir;

namespace {

// The renderer's file written by libsndfile onto a regular file, seeking as it likes.
std::vector<unsigned char> LibsndfileBytes(const std::string& path, const Sound& sound) {
  SF_INFO info{0, sound.sampleRate, sound.nChannels, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 0, 0};
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
  sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  sf_writef_float(file, sound.samples.data(), sound.NFrames());
  sf_close(file);
  return ReadBytes(path);
}

// Writes one frame and then the rest, as the render loop writes blocks; "" when all went well.
std::string WriteAll(FloatWavWriter& writer, const Sound& sound) {
  std::string error;
  const long long first = std::min(1LL, sound.NFrames());
  const bool written =
      writer.Write(sound.samples.data(), first, &error) &&
      writer.Write(sound.samples.data() + first * sound.nChannels, sound.NFrames() - first, &error);
  return written ? "" : error;
}

}  // namespace

// A file and a FIFO get the bytes libsndfile writes to a file it can seek in, the FIFO front to
// back: header and samples as they come, the header only on Commit when there are no samples.
// The reading end is opened read-write, so that neither side waits for the other.
TEST(FloatWavWriter, WritesFilesAndFifosTheBytesLibsndfileWritesToAFile) {
  // Beyond full scale and tiny values too, which a float file keeps as they are.
  for (const Sound& sound :
       {Sound{2, 44100, 0, {0.5f, -0.25f, 1.5f, -2.0f, 1e-9f, 0.0f}}, Sound{1, 48000, 0, {}}}) {
    TempDir dir;
    const std::vector<unsigned char> expected = LibsndfileBytes(dir.File("ref.wav"), sound);
    ASSERT_EQ(mkfifo(dir.File("out.fifo").c_str(), 0644), 0);
    const int reader = open(dir.File("out.fifo").c_str(), O_RDWR | O_NONBLOCK);
    for (const char* name : {"out.wav", "out.fifo"}) {
      std::string error;
      auto writer = FloatWavWriter::Create(dir.File(name), sound.nChannels, sound.sampleRate,
                                           sound.NFrames(), &error);
      ASSERT_TRUE(writer) << error;
      ASSERT_EQ(WriteAll(*writer, sound), "");
      std::vector<unsigned char> bytes = render_test::Drain(reader);
      EXPECT_EQ(bytes.empty(), sound.NFrames() == 0 || name[4] == 'w') << name;
      ASSERT_TRUE(writer->Commit(&error)) << error;
      const std::vector<unsigned char> atCommit = render_test::Drain(reader);
      bytes.insert(bytes.end(), atCommit.begin(), atCommit.end());
      EXPECT_EQ(name[4] == 'w' ? ReadBytes(dir.File(name)) : bytes, expected) << name;
    }
    close(reader);
    EXPECT_EQ(dir.List(), (std::vector<std::string>{"out.fifo", "out.wav", "ref.wav"}));
  }
}

// A file whose header would be wrong is refused: longer than the 32-bit RIFF size (the header
// less 8 bytes, plus the samples) can say, where 4 GiB less 128 bytes of samples fit and less 64
// do not, or shorter than announced.
TEST(FloatWavWriter, NeverLeavesAFileWhoseHeaderIsWrong) {
  TempDir dir;
  const std::string out = dir.File("out.wav");
  std::string error;
  EXPECT_TRUE(FloatWavWriter::Create(out, 2, 48000, (1LL << 29) - 16, &error)) << error;
  EXPECT_FALSE(FloatWavWriter::Create(out, 2, 48000, (1LL << 29) - 8, &error));
  EXPECT_NE(error.find("\"" + out + "\": 536870904 frames are more than a WAV file holds"),
            std::string::npos)
      << error;
  auto writer = FloatWavWriter::Create(out, 1, 48000, 4, &error);
  ASSERT_TRUE(writer) << error;
  ASSERT_EQ(WriteAll(*writer, Sound{1, 48000, 0, {0, 0, 0}}), "");
  EXPECT_FALSE(writer->Commit(&error));
  EXPECT_NE(error.find("3 frames"), std::string::npos) << error;
  writer.reset();
  EXPECT_TRUE(dir.List().empty());
}

// Written at offsets as libsndfile goes: a header with sizes yet unknown, the samples, the final
// header. Only the predicted header and the samples reach the file, in that order, and only if
// the final header turns out to be the predicted one; a write going back into the samples fails.
TEST(HeaderFirstStream, SendsThePredictedHeaderFirstAndChecksItAtTheEnd) {
  for (const std::string finalHeader : {"HDR!", "HDR?"}) {
    TempDir dir;
    std::string error;  // stays empty while all goes well
    auto file = render::AtomicFile::Create(dir.File("out.bin"), &error);
    ASSERT_TRUE(file) << error;
    render::HeaderFirstStream stream(*file, {'H', 'D', 'R', '!'});
    SF_VIRTUAL_IO* io = render::HeaderFirstStream::Io();
    const auto writeAt = [&](sf_count_t offset, const std::string& bytes) {
      io->seek(offset, SEEK_SET, &stream);
      return io->write(bytes.data(), static_cast<sf_count_t>(bytes.size()), &stream);
    };
    EXPECT_EQ(writeAt(0, "hdr?"), 4);
    EXPECT_EQ(writeAt(4, "ab"), 2);
    EXPECT_EQ(writeAt(5, "c"), 0);
    EXPECT_NE(stream.Error().find("at byte 5 where"), std::string::npos) << stream.Error();
    EXPECT_EQ(writeAt(0, finalHeader), 4);
    const bool predicted = finalHeader == "HDR!";
    EXPECT_EQ(stream.Finish(&error), predicted) << error;
    EXPECT_EQ(error.find("not the one predicted") != std::string::npos, !predicted) << error;
    ASSERT_TRUE(file->Commit(&error)) << error;
    EXPECT_EQ(ReadBytes(dir.File("out.bin")),
              (std::vector<unsigned char>{'H', 'D', 'R', '!', 'a', 'b'}));
  }
}
