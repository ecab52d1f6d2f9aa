#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "plug/ByteChunk.h"
#include "plug/WDL_HeapBuf.h"
#include "plug/WDL_PtrList.h"
#include "plug/WDL_String.h"
#include "plug/WDL_TypedBuf.h"

// Allocations below are worked out by hand from the growth rule: with granularity >= 4096,
// g = max(granularity, size / 2) rounded down to 4096, step = 4096 if g < 4096 else
// min(g, 4194304), allocation = ((step + size + 96) rounded down to 4096) - 96.
TEST(WDL_HeapBuf, GrowsByTheStepRule) {
  WDL_HeapBuf buf(4096);
  EXPECT_EQ(buf.Get(), nullptr);
  EXPECT_NE(buf.Resize(8), nullptr);
  EXPECT_EQ(buf.GetSize(), 8);
  EXPECT_EQ(buf.GetAllocated(), 4000);     // (4096 + 8 + 96) -> 4096, - 96
  buf.Resize(4000);
  EXPECT_EQ(buf.GetAllocated(), 4000);     // fits
  buf.Resize(4001);
  EXPECT_EQ(buf.GetAllocated(), 8096);     // (4096 + 4001 + 96 = 8193) -> 8192, - 96
  buf.Resize(100000);
  EXPECT_EQ(buf.GetAllocated(), 147360);   // g 49152; (49152 + 100000 + 96) -> 147456, - 96
  buf.Resize(20000000);
  EXPECT_EQ(buf.GetAllocated(), 24190880); // step capped at 4194304; 24194400 -> 24190976, - 96
}

TEST(WDL_HeapBuf, ShrinksOnlyWhenMostOfALargeAllocationWouldBeIdle) {
  WDL_HeapBuf buf(4096);
  buf.Resize(100000);
  buf.Resize(80000);                       // at least half of 147360: kept
  EXPECT_EQ(buf.GetAllocated(), 147360);
  buf.Resize(1000, false);                 // no shrinking asked for
  EXPECT_EQ(buf.GetAllocated(), 147360);
  EXPECT_EQ(buf.GetSize(), 1000);
  buf.Resize(100000);
  buf.Resize(20000);                       // g 8192; (8192 + 20000 + 96) -> 24576, - 96
  EXPECT_EQ(buf.GetAllocated(), 24480);
  buf.Resize(21000);                       // growing within the allocation
  EXPECT_EQ(buf.GetAllocated(), 24480);
  buf.Resize(5000);                        // 5000 >= 24480 - 4 x 4096 = 8096? no; half? no
  EXPECT_EQ(buf.GetAllocated(), 8096);     // g 4096; (4096 + 5000 + 96) -> 8192, - 96
}

TEST(WDL_HeapBuf, SmallAllocationsAndEmptySizes) {
  WDL_HeapBuf buf(4096);
  buf.Resize(4001);
  EXPECT_EQ(buf.Resize(0), nullptr);
  EXPECT_EQ(buf.GetAllocated(), 8096);     // at most 4 x granularity: never shrunk
  EXPECT_EQ(buf.Resize(0), nullptr);       // same size again: still null
  buf.Resize(-5);
  EXPECT_EQ(buf.GetSize(), 0);

  WDL_HeapBuf text(128);                   // fine granularity: size + max(granularity, size / 2)
  text.Resize(10);
  EXPECT_EQ(text.GetAllocated(), 138);
  text.Resize(1000);
  EXPECT_EQ(text.GetAllocated(), 1500);
  text.Resize(100);                        // below half and below 1500 - 512: shrunk
  EXPECT_EQ(text.GetAllocated(), 228);

  WDL_HeapBuf floor(4096);
  floor.SetMinAllocSize(10000);
  floor.Resize(8);
  EXPECT_EQ(floor.GetAllocated(), 10000);
}

TEST(WDL_HeapBuf, KeepsContentsAcrossReallocation) {
  WDL_HeapBuf buf(4096);
  auto* bytes = static_cast<unsigned char*>(buf.Resize(100000));
  for (int i = 0; i < 100000; ++i) bytes[i] = static_cast<unsigned char>(i * 7);
  bytes = static_cast<unsigned char*>(buf.Resize(3000));
  for (int i = 0; i < 3000; ++i) ASSERT_EQ(bytes[i], static_cast<unsigned char>(i * 7));
  bytes = static_cast<unsigned char*>(buf.Resize(50000));
  EXPECT_EQ(bytes[2999], static_cast<unsigned char>(2999 * 7));
  EXPECT_EQ(bytes[49999], 0);  // never written: reads as zero
}

TEST(WDL_TypedBuf, CountsValuesNotBytes) {
  WDL_TypedBuf<double> buf(4096);
  buf.Resize(1024);
  EXPECT_EQ(buf.GetSize(), 1024);
  EXPECT_EQ(buf.GetHeap().GetAllocated(), 12192);  // 8192 bytes: (4096 + 8192 + 96) -> 12288, - 96
}

namespace {
struct Tracked {
  explicit Tracked(int* deaths) : mDeaths(deaths) {}
  ~Tracked() { ++*mDeaths; }
  int* mDeaths;
};
}  // namespace

TEST(WDL_PtrList, OwnsItsItemsAndKeepsOrder) {
  int deaths = 0;
  {
    WDL_PtrList<Tracked> list;
    Tracked* a = list.Add(new Tracked(&deaths));
    Tracked* c = list.Add(new Tracked(&deaths));
    Tracked* b = list.Insert(1, new Tracked(&deaths));
    EXPECT_EQ(list.GetSize(), 3);
    EXPECT_EQ(list.Get(0), a);
    EXPECT_EQ(list.Get(1), b);
    EXPECT_EQ(list.Get(2), c);
    EXPECT_EQ(list.Get(3), nullptr);
    list.Delete(0);
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(list.Get(0), b);
    list.Delete(7);
    EXPECT_EQ(list.GetSize(), 2);
  }
  EXPECT_EQ(deaths, 3);
}

TEST(WDL_String, SetsAndAppends) {
  WDL_String s("Tarn");
  EXPECT_STREQ(s.Get(), "Tarn");
  s.Append(" effect", 3);
  EXPECT_STREQ(s.Get(), "Tarn ef");
  s.Set(nullptr);
  EXPECT_STREQ(s.Get(), "");
  EXPECT_EQ(s.GetLength(), 0);
}

TEST(ByteChunk, StoresLittleEndianValuesAndReadsWithPositions) {
  ByteChunk chunk;
  double one = 1.0;
  int word = 0x01020304;
  EXPECT_EQ(chunk.Put(&one), 8);
  EXPECT_EQ(chunk.Put(&word), 12);
  const unsigned char expected[] = {0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 4, 3, 2, 1};
  ASSERT_EQ(chunk.Size(), 12);
  EXPECT_EQ(std::memcmp(chunk.GetBytes(), expected, 12), 0);

  double d = -1.0;
  int w = 0;
  EXPECT_EQ(chunk.Get(&d, 0), 8);
  EXPECT_EQ(d, 1.0);
  EXPECT_EQ(chunk.Get(&w, 8), 12);
  EXPECT_EQ(w, 0x01020304);

  d = 42.0;
  EXPECT_EQ(chunk.Get(&d, 5), -1);  // only 7 bytes left
  EXPECT_EQ(chunk.Get(&d, -1), -1);
  EXPECT_EQ(chunk.Get(&d, INT_MAX), -1);
  EXPECT_EQ(d, 42.0);
  EXPECT_EQ(chunk.Get(&w, 8), 12);  // exactly to the end is fine

  chunk.Clear();
  EXPECT_EQ(chunk.Size(), 0);
  EXPECT_EQ(chunk.Resize(16), 16);
}
