#include <gtest/gtest.h>

#include <cstdio>

#include "AtomicFile.h"
#include "HeaderFirstStream.h"
#include "RenderTestFiles.h"

using render::AtomicFile;
using render::HeaderFirstStream;
using render_test::TempDir;

namespace {

const std::vector<unsigned char> kHeader = {'H', 'D', 'R', '!'};

// Writes at an offset through the callbacks libsndfile is given.
sf_count_t WriteAt(HeaderFirstStream& stream, sf_count_t offset, const std::string& bytes) {
  SF_VIRTUAL_IO* io = HeaderFirstStream::Io();
  io->seek(offset, SEEK_SET, &stream);
  return io->write(bytes.data(), static_cast<sf_count_t>(bytes.size()), &stream);
}

}  // namespace

// As libsndfile goes: a header with sizes yet unknown, the samples, the final header. Only the
// predicted header and the samples reach the file, in that order, and only if the final header
// turns out to be the predicted one; a write going back into the samples already sent fails.
TEST(HeaderFirstStream, SendsThePredictedHeaderFirstAndChecksItAtTheEnd) {
  for (const std::string finalHeader : {"HDR!", "HDR?"}) {
    TempDir dir;
    std::string error;  // stays empty while all goes well
    auto file = AtomicFile::Create(dir.File("out.bin"), &error);
    ASSERT_TRUE(file) << error;
    HeaderFirstStream stream(*file, kHeader);
    EXPECT_EQ(WriteAt(stream, 0, "hdr?"), 4);
    EXPECT_EQ(WriteAt(stream, 4, "ab"), 2);
    EXPECT_EQ(WriteAt(stream, 5, "c"), 0);
    EXPECT_NE(stream.Error().find("at byte 5 where"), std::string::npos) << stream.Error();
    EXPECT_EQ(WriteAt(stream, 0, finalHeader), 4);
    const bool predicted = finalHeader == "HDR!";
    EXPECT_EQ(stream.Finish(&error), predicted) << error;
    EXPECT_EQ(error.find("not the one predicted") != std::string::npos, !predicted) << error;
    ASSERT_TRUE(file->Commit(&error)) << error;
    EXPECT_EQ(render_test::ReadBytes(dir.File("out.bin")),
              (std::vector<unsigned char>{'H', 'D', 'R', '!', 'a', 'b'}));
  }
}
