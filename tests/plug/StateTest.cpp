#include <cstdlib>
#include <memory>
#include <tuple>

#include "TestPlug.h"
#include "plug/WDL_String.h"

using Values = std::vector<double>;

// Parameter i holds i, but the last one 3 in 2 ... 5 (so that 0.0 clamps).
struct EightPlug : TestPlug {
  EightPlug() : TestPlug("1-1", 8, 0, 3) {
    for (int i = 0; i < 7; ++i) GetParam(i)->Set(i);
    GetParam(7)->InitDouble("p", 3.0, 2.0, 5.0, 0.1);
  }
  ByteChunk state;
};

// The state: plain little-endian binary64s in index order; a damaged one applies what it holds,
// 0.0 (clamped) where it ends, never rounds, notifies all. Equal: within 1e-5 in single precision.
// The default preset fills free slots ("Empty" if unnamed, surplus ignored); pruning drops others.
TEST(State, LayoutRestoreComparisonAndPresets) {
  EightPlug plug, full, unused;
  EXPECT_TRUE(plug.SerializeState(&plug.state) && plug.SerializeState(&plug.state));
  const unsigned char zeroOne[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
  ASSERT_EQ(plug.state.Size(), 128);
  EXPECT_EQ(std::memcmp(plug.state.GetBytes() + 64, zeroOne, 16), 0);  // appended: 0.0, 1.0
  using Case = std::tuple<Values, int, int, int, Values>;  // data, tail bytes, start, result
  for (const auto& [data, tail, start, result, expected] : std::vector<Case>{
           {{-1, -2, -3, -4, -5, -6, -7}, 4, 0, -1, {-1, -2, -3, -4, -5, -6, -7, 2}},
           {{9, 8}, 4, 0, -1, {9, 8, 0, 3, 4, 5, 6, 3}},
           {{}, 0, 0, -1, {0, 1, 2, 3, 4, 5, 6, 3}},
           {{1, 1, 1, 1, 1, 1, 1, 1}, 0, -8, -1, {4, 1, 2, 3, 4, 5, 6, 3}},
           {{0, 25, -1e9, 0.05, 1, 1, 1, 1, 3.55}, 0, 8, 72, {10, -10, 0.05, 1, 1, 1, 1, 3.55}}}) {
    EightPlug fresh;
    fresh.GetParam(0)->Set(4.0);
    for (double v : data) fresh.state.Put(&v);
    fresh.state.PutBytes("\x01\x02\x03\x04", tail);
    EXPECT_EQ(fresh.UnserializeState(&fresh.state, start), result);
    EXPECT_EQ(fresh.Values(), expected);
    EXPECT_EQ(fresh.changes, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
  }
  TestPlug two("1-1", 2, 0);
  two.GetParam(0)->Set(3.0);
  two.GetParam(1)->Set(-1.0);
  std::string equal;
  // Each parameter is read at its own place after the start, which counts doubles.
  for (Values stored : {Values{3, -1}, {3.000001, -1}, {3.00003, -1}, {9, 3, -1}})
    equal += std::to_string(
        two.CompareState(reinterpret_cast<unsigned char*>(stored.data()), stored.size() - 2));
  EXPECT_EQ(equal + plug.GetPreset(2)->mName + std::to_string(plug.GetPreset(2)->mInitialized),
            "1101empty0");
  plug.MakeDefaultPreset("-", 1);
  plug.MakeDefaultPreset(nullptr, 1);
  full.MakeDefaultPreset("x", 5);
  for (EightPlug* p : {&plug, &full, &unused}) p->PruneUninitializedPresets();
  EXPECT_EQ(std::string(plug.GetPreset(0)->mName) + plug.GetPreset(1)->mName, "-Empty");
  EXPECT_TRUE(plug.GetPreset(0)->mChunk.Size() == 64 && plug.NPresets() == 2 &&
              full.NPresets() == 3 && unused.NPresets() == 0);
}

// Chunk reads return the next position, or -1 outside the used size; lists own their items.
TEST(Containers, ChunkReadsListsStringsAndHeapGrowth) {
  ByteChunk chunk;
  double d = 42.0;
  unsigned char last = 0;
  EXPECT_EQ(chunk.Put(&d) + chunk.Put(&d), 24);
  for (int bad : {9, -1, INT_MAX}) EXPECT_EQ(chunk.Get(&d, bad), -1);
  EXPECT_EQ(chunk.Get(&last, 15) + last, 16 + 0x40);  // 42 is 0x4045000000000000
  chunk.Clear();
  auto alive = std::make_shared<int>();
  {
    WDL_PtrList<std::shared_ptr<int>> list;
    list.Add(new auto(alive));
    auto *c = list.Add(new auto(alive)), *b = list.Insert(1, new auto(alive));
    list.Delete(0);
    list.Delete(2);  // one past the end: ignored
    EXPECT_TRUE(alive.use_count() == 3 && list.Get(0) == b && list.Get(1) == c && !list.Get(2));
  }
  WDL_String s("Tarn");
  s.Append(" effect", 3);
  s.Append(" fx");
  const std::string appended = s.Get();
  s.Set("abc");
  EXPECT_TRUE(alive.use_count() == 1 && chunk.Size() == 0 && appended + s.Get() == "Tarn ef fxabc");
  // gran>=4096: g = max(gran, size/2) down to 4096s, step max(4096, min(g, 4194304)), alloc (step +
  // size + 96) down to 4096s - 96; else size + max(gran, size/2). Shrunk if < alloc/2, alloc-4gran.
  WDL_HeapBuf pages(4096), fine(128), floor(4096);
  floor.SetMinAllocSize(10000);
  std::string allocs;
  auto resize = [&](WDL_HeapBuf& buf, std::initializer_list<int> sizes) {
    for (int size : sizes) {
      void* data = buf.Resize(std::abs(size), size > 0);  // a negative size: no shrinking
      allocs += std::to_string(buf.GetAllocated()) + (data ? " " : "! ");
    }
  };
  resize(pages,
         {1, 8, 4001, 100000, 80000, -1000, 100000, 20000, 21000, 5000, 0, 20000000, 8400799});
  resize(fine, {10, 1000, 100});
  resize(floor, {8});
  EXPECT_EQ(allocs,
            "4000 4000 8096 147360 147360 147360 147360 24480 24480 8096 8096! 24190880 "
            "12591008 138 1500 228 10000 ");
  WDL_TypedBuf<double> doubles(4096);  // sized in values: 8192, 160000 and 80 bytes
  for (int count : {1024, 20000, 10}) doubles.Resize(count);
  EXPECT_TRUE(doubles.GetSize() == 10 && doubles.GetHeap().GetAllocated() == 4000);
}
