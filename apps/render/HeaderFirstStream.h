#pragma once

#include <string>
#include <vector>

#include "OutputFile.h"
#include "VirtualFile.h"

namespace render {

// What libsndfile writes, sent to an OutputFile front to back. libsndfile writes its header
// twice over the first bytes, with sizes yet unknown on opening and with the final ones on
// closing; both are kept from the file, and the final header, predicted beforehand
// (WavHeaderPrediction.h), goes out just ahead of the first sample instead. The samples follow
// as they come. Nothing is sought, held back or put in a temporary file, so a FIFO or a terminal
// takes the file as well as a regular file does.
class HeaderFirstStream : public VirtualFile {
 public:
  HeaderFirstStream(OutputFile& sink, std::vector<unsigned char> predictedHeader);

  // Once libsndfile has closed: fails unless the header it ended with is the one predicted,
  // which the sink has been given, and sends it now if no sample has.
  bool Finish(std::string* error);

  // Why the sink refused the last write, or why the stream did; empty if neither did.
  const std::string& Error() const { return mError; }

 private:
  bool Place(sf_count_t offset, const unsigned char* data, sf_count_t size) override;
  bool Send(const unsigned char* data, sf_count_t size);

  OutputFile& mSink;
  const std::vector<unsigned char> mPredicted;
  std::vector<unsigned char> mWritten;  // the header as libsndfile last wrote it
  sf_count_t mSent = 0;
  std::string mError;
};

}  // namespace render
