#pragma once

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
    std::vector<std::string_view> sqlInsertKeys;
    std::string_view sqlCreate;
    std::string_view sqlCreateLong;
};

}  // namespace vantor::inline VANTOR_MODULE
