#include "editor/BitmapCache.h"

#include <utility>
#include <vector>

#include "editor/IGraphics.h"
#include "lice/LICE_IBitmap.h"
#include "plug/WDL_Mutex.h"

namespace {

struct Cache {
  WDL_Mutex mutex;
  std::vector<std::pair<int, LICE_IBitmap*>> entries;
  ~Cache() {
    for (auto& entry : entries) delete entry.second;
  }
};

Cache& TheCache() {
  static Cache cache;
  return cache;
}

}  // namespace

LICE_IBitmap* CachedBitmap(int id, const char* name, IGraphics* loader) {
  Cache& cache = TheCache();
  WDL_MutexLock lock(&cache.mutex);
  for (const auto& [cachedId, bitmap] : cache.entries)
    if (cachedId == id) return bitmap;
  LICE_IBitmap* bitmap = loader->OSLoadBitmap(id, name);
  cache.entries.emplace_back(id, bitmap);
  return bitmap;
}
