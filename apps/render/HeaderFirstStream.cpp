#include "HeaderFirstStream.h"

#include <algorithm>

#include "Quoted.h"

namespace render {

HeaderFirstStream::HeaderFirstStream(OutputFile& sink, std::vector<unsigned char> predictedHeader)
    : mSink(sink), mPredicted(std::move(predictedHeader)), mWritten(mPredicted.size()) {}

bool HeaderFirstStream::Place(sf_count_t offset, const unsigned char* data, sf_count_t size) {
  const sf_count_t headerBytes = static_cast<sf_count_t>(mPredicted.size());
  if (offset < headerBytes) {
    const sf_count_t n = std::min(size, headerBytes - offset);
    std::copy(data, data + n, mWritten.begin() + offset);
    offset += n;
    data += n;
    size -= n;
  }
  if (size == 0) return true;
  const sf_count_t expected = std::max(mSent, headerBytes);
  if (offset != expected) {
    mError = "cannot write " + Quoted(mSink.Path()) + ": libsndfile wrote at byte " +
             std::to_string(offset) + " where the file, written front to back, is at byte " +
             std::to_string(expected);
    return false;
  }
  if (mSent == 0 && !Send(mPredicted.data(), headerBytes)) return false;
  return Send(data, size);
}

bool HeaderFirstStream::Send(const unsigned char* data, sf_count_t size) {
  if (!mSink.Write(data, static_cast<std::size_t>(size), &mError)) return false;
  mSent += size;
  return true;
}

bool HeaderFirstStream::Finish(std::string* error) {
  if (mWritten != mPredicted) {
    *error = "cannot write " + Quoted(mSink.Path()) +
             ": the WAV header libsndfile ended with is not the one predicted for it";
    return false;
  }
  if (mSent == 0 && !Send(mPredicted.data(), static_cast<sf_count_t>(mPredicted.size()))) {
    *error = mError;
    return false;
  }
  return true;
}

}  // namespace render
