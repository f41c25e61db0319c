#pragma once

#include <string>
#include <string_view>

#include "Hosts/Menu/MenuLayout.h"
#include "Hosts/Menu/MenuWindows.h"
#include "Shared/Graphs/HistoryGraph.h"

namespace vantor {

// What assistive technology is told, in the user's language. Thread: main.

/// What the processors do now: the shares in words; "" before there is a sample.
std::string itemSentence();

/// What a graph shows, as it was painted last: its newest value and its greatest. Shares are in
/// percent, loads in their own figures.
std::string graphSentence(std::string_view name, const HistoryGraph& graph);

/// All that a row says, one after the other; "" for a row that says nothing. A graph goes by the
/// name of its section, which is `section`.
std::string rowSentence(const VTRMenuItem& item, std::string_view section);

/// The row as it is told; its place counts from the first row.
MenuRowDescription describedRow(const MenuLayout& layout, std::size_t index);

}  // namespace vantor
