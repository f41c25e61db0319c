#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

/// A key of a sample and the position in its values that it stands for.
struct SampleKey {
    static constexpr int kTime = -1;  // in place of a position: the key carries the time
    std::string_view key;
    int position;
};

/// How the samples of one collector read and write: the keys under which figures travel, and
/// the statements of its history tables ("%@" stands for the table's name). All texts are
/// literals.
struct SampleConfig {
    std::vector<std::string_view> addSampleIDKeys;  // a later key that is present wins
    std::vector<SampleKey> addSampleMap;            // reading: where each key's figure goes
    std::vector<SampleKey> sampleKeys;              // writing: which figure each key gets
    std::vector<std::string_view> emptySampleKeys;  // what a gap carries with value 0
    std::vector<SampleKey> xmlSampleKeys;
    std::string_view sqlInsert;
    std::vector<std::string_view> sqlInsertKeys;  // whose figures fill the statement, in order
    std::string_view sqlCreate;
    std::string_view sqlCreateLong;

    // With storage type 2: `sqlCreateID` makes the table of IDs, `sqlCreate` that of the items.
    std::string_view sqlCreateID{};
    std::string_view sqlCreateIDLong{};
    std::string_view sqlInsertItem{};
    std::vector<std::string_view> sqlInsertItemKeys{};

    // For the long-term table these replace the ones above, where there are any.
    std::string_view sqlInsertLong{};
    std::vector<std::string_view> sqlInsertKeysLong{};
    std::string_view sqlInsertItemLong{};
    std::vector<std::string_view> sqlInsertItemKeysLong{};

    // What exported figures are divided by: for these protocol versions alone, where there is a
    // list of them, and never under the excluded keys.
    std::optional<double> xmlSampleDivide{};
    std::optional<std::vector<int>> xmlSampleDivideProtocols{};
    std::vector<std::string_view> xmlSampleDivideExcludeKeys{};
};

}  // namespace vantor::inline VANTOR_MODULE
