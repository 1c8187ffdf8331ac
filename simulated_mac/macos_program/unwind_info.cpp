#include "simulated_mac/macos_program/unwind_info.h"

#include <algorithm>
#include <map>

namespace wendle::macho {
namespace {
constexpr const char* what = "its unwind table";
constexpr std::uint32_t hasExceptionTable = 0x40000000;

struct TableHeader {
  std::uint32_t version, commonOffset, commonCount, personalityOffset, personalityCount, indexOffset,
      indexCount;
};

// One for each page of functions, and one more that ends the last page.
struct IndexEntry {
  std::uint32_t start, pageOffset, exceptionTablesOffset;
};

struct Function {
  std::uint32_t start, encoding;
};

class Table {
 public:
  explicit Table(Bytes bytes) : bytes_(bytes), header_(value<TableHeader>(0)) {
    if (header_.version != 1) throw Refusal("its unwind table has an unknown version");
  }

  std::vector<UnwindEntry> entries() const {
    std::vector<UnwindEntry> result;
    for (std::uint64_t i = 0; i + 1 < header_.indexCount; ++i) {
      const IndexEntry page = index(i), next = index(i + 1);
      const auto tables = exceptionTables(page, next);
      for (const Function& function : functions(page)) {
        if (!result.empty()) result.back().end = function.start;
        result.push_back(makeEntry(function, tables));
        result.back().end = next.start;
      }
    }
    const bool isSorted = std::all_of(result.begin(), result.end(),
                                      [](const UnwindEntry& entry) { return entry.start <= entry.end; });
    if (!isSorted) throw Refusal("it is damaged: the order of its unwind table");
    return result;
  }

 private:
  template <typename T>
  T value(std::uint64_t offset) const {
    return valueAt<T>(bytes_, offset, what);
  }

  IndexEntry index(std::uint64_t i) const {
    return value<IndexEntry>(header_.indexOffset + i * sizeof(IndexEntry));
  }

  std::map<std::uint32_t, std::uint32_t> exceptionTables(const IndexEntry& page,
                                                         const IndexEntry& next) const {
    std::map<std::uint32_t, std::uint32_t> result;
    for (std::uint64_t at = page.exceptionTablesOffset; at < next.exceptionTablesOffset; at += 8) {
      result.emplace(value<std::uint32_t>(at), value<std::uint32_t>(at + 4));
    }
    return result;
  }

  // A page has its functions one after the other, or packs each with an index of its encoding into 32 bits.
  std::vector<Function> functions(const IndexEntry& page) const {
    const auto kind = value<std::uint32_t>(page.pageOffset);
    if (kind != 2 && kind != 3) throw Refusal("its unwind table has a page of an unknown kind");
    const std::uint64_t first = page.pageOffset + value<std::uint16_t>(page.pageOffset + 4);
    const auto count = value<std::uint16_t>(page.pageOffset + 6);
    std::vector<Function> result;
    for (std::uint64_t i = 0; i < count; ++i) {
      if (kind == 2) {
        result.push_back(value<Function>(first + i * sizeof(Function)));
      } else {
        const auto packed = value<std::uint32_t>(first + i * 4);
        result.push_back({page.start + (packed & 0xFFFFFFU), encoding(page, packed >> 24U)});
      }
    }
    return result;
  }

  std::uint32_t encoding(const IndexEntry& page, std::uint64_t i) const {
    if (i < header_.commonCount) return value<std::uint32_t>(header_.commonOffset + i * 4);
    const std::uint64_t ofPage = page.pageOffset + value<std::uint16_t>(page.pageOffset + 8);
    return value<std::uint32_t>(ofPage + (i - header_.commonCount) * 4);
  }

  UnwindEntry makeEntry(const Function& function,
                        const std::map<std::uint32_t, std::uint32_t>& tables) const {
    UnwindEntry entry{function.start, function.start, function.encoding, 0, 0};
    if ((function.encoding & hasExceptionTable) != 0) {
      const auto found = tables.find(function.start);
      if (found == tables.end()) throw Refusal("it is damaged: a function lacks its exception table");
      entry.exceptionTable = found->second;
    }
    if (const std::uint32_t personality = function.encoding >> 28U & 3U; personality != 0) {
      if (personality > header_.personalityCount)
        throw Refusal("it is damaged: an unknown personality function");
      entry.personalityPointer = value<std::uint32_t>(header_.personalityOffset + (personality - 1) * 4);
    }
    return entry;
  }

  Bytes bytes_;
  TableHeader header_;
};
}  // namespace

std::vector<UnwindEntry> parseUnwindInfo(Bytes section) { return Table(section).entries(); }
}  // namespace wendle::macho
