// Finds records of a scene by name in constant time. A damaged file may hold tens of thousands of names, and
// look up as many.
#pragma once

#include <string_view>
#include <unordered_map>

template<typename Record>
class name_index {
  public:
    // The first record of that name in the list that begins with `first`; null without one. The list only
    // ever grows at its end, and the index with it.
    Record* find(Record* first, std::string_view name) {
        for (Record* next = last == nullptr ? first : last->next; next != nullptr; next = next->next) {
            records.try_emplace(next->name, next);
            last = next;
        }
        const auto found = records.find(name);
        return found == records.end() ? nullptr : found->second;
    }

    void clear() {
        records.clear();
        last = nullptr;
    }

  private:
    std::unordered_map<std::string_view, Record*> records; // the names are those of the records themselves
    Record* last = nullptr;                                // the last one that is in
};
