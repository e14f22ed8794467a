#include "nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace vok::confcheck {

namespace {

constexpr std::size_t MOST_EDITS = 3;
constexpr std::size_t LETTERS_PER_EDIT = 4;  // a few edits turn a short name into another one

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// How many letters to insert, delete or replace, but at most `limit` + 1.
std::size_t edits(std::string_view a, std::string_view b, std::size_t limit) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return limit + 1;
  std::vector<std::size_t> row(b.size() + 1);  // from the first letters of a to those of b
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
    if (*std::min_element(row.begin(), row.end()) > limit) return limit + 1;
  }
  return std::min(row.back(), limit + 1);
}

}  // namespace

const Key* nearest(std::string_view name, const Keys& keys,
                   const std::function<bool(const Key&)>& isPreferred) {
  const Key* best = nullptr;
  std::size_t fewest = MOST_EDITS;
  for (const Key& key : keys) {
    const std::size_t limit = std::min(fewest, key.name.size() / LETTERS_PER_EDIT);
    const std::size_t count = edits(name, key.name, limit);
    if (count > limit) continue;
    if (best != nullptr && count == fewest && (isPreferred(*best) || !isPreferred(key))) continue;
    best = &key;
    fewest = count;
  }
  return best;
}

}  // namespace vok::confcheck
