#pragma once

#include <list>
#include <unordered_map>
#include <utility>

/// Keys and values in the order in which the keys were put in, found by hash. For the sources of this folder
/// only.
template <typename Hash, typename Equal>
class CFDictionaryEntries {
 public:
  using List = std::list<std::pair<const void*, const void*>>;
  using iterator = List::iterator;
  using const_iterator = List::const_iterator;

  CFDictionaryEntries(const Hash& hash, const Equal& equal) : m_places(0, hash, equal) {}
  CFDictionaryEntries(const CFDictionaryEntries&) = delete;
  CFDictionaryEntries& operator=(const CFDictionaryEntries&) = delete;

  iterator begin() { return m_list.begin(); }
  iterator end() { return m_list.end(); }
  const_iterator begin() const { return m_list.begin(); }
  const_iterator end() const { return m_list.end(); }
  size_t size() const { return m_list.size(); }
  bool empty() const { return m_list.empty(); }
  void reserve(size_t count) { m_places.reserve(count); }

  iterator find(const void* key) {
    const auto found = m_places.find(key);
    return found == m_places.end() ? m_list.end() : found->second;
  }
  const_iterator find(const void* key) const {
    const auto found = m_places.find(key);
    return found == m_places.end() ? m_list.end() : const_iterator(found->second);
  }

  /// \param key  One that isn't there.
  void Append(const void* key, const void* value) {
    m_places.emplace(key, m_list.emplace(m_list.end(), key, value));
  }

  void erase(iterator place) {
    m_places.erase(place->first);
    m_list.erase(place);
  }

  /// Empties it; what was in it is the caller's.
  List TakeAll() {
    m_places.clear();
    return std::exchange(m_list, {});
  }

 private:
  List m_list;
  std::unordered_map<const void*, iterator, Hash, Equal> m_places;
};
