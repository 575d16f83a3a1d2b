#pragma once
// A merge run for tests: the template, a job on a pasteboard of the test's own, and an observer that keeps what it is
// told.

#include <string>
#include <vector>

#include "merge/merge_job.h"
#include "placeholders/substitution.h"
#include "plugin_fixture.h"
#include "support/log.h"
#include "support/pasteboard.h"

class MergeTest : public PluginTest, public vornaset::MergeObserver {
  protected:
    void SetUp() override {
        vornaset::Pasteboard::setPrivateSpace();
        vornaset::gMergeArmed = 0;
        vornaset::gMergeJob = nullptr;
        vornaset::gRules = nullptr;
        formerObserver_ = vornaset::setMergeObserver(this);
        formerSink_ = vornaset::setSystemLogSink([this](std::string_view line) { systemLog.emplace_back(line); });
    }
    void TearDown() override {
        vornaset::setSystemLogSink(formerSink_);
        vornaset::setMergeObserver(formerObserver_);
        vornaset::gMergeArmed = 0;
        vornaset::gMergeJob = nullptr;
        PluginTest::TearDown();
    }

    // MergeObserver
    void problem(vornaset::ProblemKind kind, const vornaset::MergePlace& place) override {
        problems.emplace_back(kind, place);
    }
    void rangeFailure(const vornaset::MergePlace& place, const vornaset::RangeException& failure) override {
        rangeFailures.push_back(place);
        reason = failure.reason();
    }

    /// Rows {Name: "r0"}, {Name: "r1"}, ...
    static vornaset::Array rows(int count) {
        vornaset::Array made = vornaset::Array::makeMutable();
        for (int row = 0; row < count; ++row) {
            made.add(vornaset::Dictionary::make({{"Name", vornaset::String(("r" + std::to_string(row)).c_str())}}));
        }
        return made;
    }
    static vornaset::Dictionary jobOf(const vornaset::Array& rows) {
        return vornaset::Dictionary::makeMutable({{"rows", rows}});
    }
    static vornaset::Pasteboard pasteboard() { return vornaset::Pasteboard::withName("com.kelmoriandev.vornaset"); }
    void post(const vornaset::Dictionary& job) { pasteboard().setPropertyList(job, "Vornaset"); }

    /// The types on the pasteboard with their texts: "overset=3".
    static std::string feedback() {
        std::string told;
        for (const vornaset::String& type : pasteboard().types()) {
            told += (told.empty() ? "" : " ") + type.utf8() + "=" + pasteboard().stringForType(type).utf8();
        }
        return told;
    }
    static std::vector<Uid> uidsUnder(const vornaset::Dictionary& job, const char* key) {
        std::vector<Uid> uids;
        const vornaset::Array array = job.valueForKey(key).array();
        for (const vornaset::Value& uid : array) {
            uids.push_back(static_cast<Uid>(uid.number().integerValue()));
        }
        return uids;
    }

    std::vector<std::pair<vornaset::ProblemKind, vornaset::MergePlace>> problems;
    std::vector<vornaset::MergePlace> rangeFailures;
    std::string reason;
    std::vector<std::string> systemLog;

  private:
    vornaset::MergeObserver* formerObserver_ = nullptr;
    vornaset::SystemLogSink formerSink_;
};
