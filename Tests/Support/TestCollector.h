#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Shared/Collectors/StatCollector.h"

namespace vantor::test {

/// A collector of two figures, "a" and "b", that measures what the test says.
class TestCollector : public StatCollector {
public:
    explicit TestCollector(const Ports& ports, StorageKind kind = StorageKind::collector)
        : StatCollector(ports, "test", "<TestCollector>", 2) {
        setTablePrefix(kind == StorageKind::items ? "thing" : "test");
        setStorageType(kind);
        mutableConfig() = kind == StorageKind::items ? itemsConfig() : ownConfig();
    }

    using StatCollector::addSample;
    using StatCollector::mutableConfig;
    using StatCollector::mutableItems;

    /// A sample of the scale of now, as a measurement leaves it.
    void addNow(double a, double time) {
        PushSamples(historyNow());
        historyNow().mutableValues(0)[0] = a;
        historyNow().setSampleID(0, nextSampleID());
        historyNow().setTime(0, time);
        historyNow().setEmpty(0, 0);
    }

    int measurements = 0;
    std::function<void()> onMeasure;
    std::function<bool(bool)> onMigrate;
    bool migrateDatabase(bool result) override { return onMigrate ? onMigrate(result) : false; }
    std::function<std::unique_ptr<StatCollectorItem>()> itemMaker;

protected:
    void measure() override {
        ++measurements;
        if (onMeasure)
            onMeasure();
        tellDelegates(0);
    }
    std::unique_ptr<StatCollectorItem> makeItem() const override {
        return itemMaker ? itemMaker() : nullptr;
    }

private:
    static SampleConfig commonConfig() {
        return {.addSampleIDKeys = {"sample", "id"},
                .addSampleMap = {{"a", 0}, {"b", 1}},
                .sampleKeys = {{"a", 0}, {"b", 1}},
                .emptySampleKeys = {"a", "b"},
                .xmlSampleKeys = {{"one", 0}, {"two", 1}},
                .sqlInsert = {},
                .sqlInsertKeys = {},
                .sqlCreate = {},
                .sqlCreateLong = {}};
    }
    static SampleConfig ownConfig() {
        SampleConfig config = commonConfig();
        config.sqlInsert = "insert into %@ (empty, sample, time, a, b) values (?, ?, ?, ?, ?)";
        config.sqlInsertKeys = {"empty", "sample", "time", "a", "b"};
        config.sqlCreate = "create table %@ (sample double PRIMARY KEY NOT NULL, "
                           "time double NOT NULL, empty integer NOT NULL, a double NOT NULL, "
                           "b double NOT NULL)";
        config.sqlCreateLong = "create table %@ (sample double, time double, empty integer, "
                               "a double, b double)";
        return config;
    }
    static SampleConfig itemsConfig() {
        SampleConfig config = commonConfig();
        config.sqlInsert = "insert into %@ (empty, sample, time) values (?, ?, ?)";
        config.sqlInsertKeys = {"empty", "sample", "time"};
        config.sqlInsertItem = "insert into %@ (sample, time, uuid, a, b) values (?, ?, ?, ?, ?)";
        config.sqlInsertItemKeys = {"sample", "time", "uuid", "a", "b"};
        config.sqlCreate = "create table %@ (sample double NOT NULL, time double NOT NULL, "
                           "uuid varchar(100) NOT NULL, a double NOT NULL, b double NOT NULL)";
        config.sqlCreateID = "create table %@ (sample double PRIMARY KEY NOT NULL, "
                             "time double NOT NULL, empty integer NOT NULL)";
        config.sqlCreateLong = "create table %@ (sample double, time double, uuid varchar(100), "
                               "a double, b double)";
        config.sqlCreateIDLong = "create table %@ (sample double, time double, empty integer)";
        return config;
    }
};

/// Hears what a collector tells, and answers what the test says.
class TestDelegate final : public StatCollectorDelegate {
public:
    void collectorUpdatedForMode(StatCollector&, int mode) override { modes.push_back(mode); }
    std::optional<bool> collectorShouldUpdateStateForSequence(StatCollector&,
                                                              int sequence) override {
        asked.push_back(sequence);
        return answer;
    }

    std::optional<bool> answer = true;
    std::vector<int> modes, asked;
};

/// A sample with these figures.
inline SampleFields
sampleOf(std::initializer_list<std::pair<std::string_view, double>> figures) {
    SampleFields sample;
    for (const auto& [key, value] : figures)
        sample.set(key, value);
    return sample;
}

}  // namespace vantor::test
