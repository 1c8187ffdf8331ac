#pragma once

#include "base/property_list.h"

namespace wendle {
// A property list that holds every kind, and each of those that are easily taken for another.
inline const PropertyList everyKind{PropertyListDictionary{
    {"text", {std::string("Späße <&>")}},
    {"negative", {std::int64_t{-4711}}},
    {"one", {std::int64_t{1}}},
    {"large", {std::int64_t{1} << 40}},
    {"two", {2.0}},
    {"tenth", {0.1}},
    {"yes", {true}},
    {"no", {false}},
    {"date", {PropertyListDate{816939612}}},
    {"data", {PropertyListData{std::string("\0\x01\xff", 3)}}},
    {"list", {PropertyListArray{{PropertyListArray()}, {PropertyListDictionary()}, {std::string()}}}},
}};
}  // namespace wendle
