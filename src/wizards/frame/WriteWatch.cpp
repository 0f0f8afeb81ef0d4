#include "wizards/frame/WriteWatch.h"

#include "link/DriveLink.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"

#include <algorithm>

namespace quorvik
{

WriteWatch::WriteWatch(ParameterTable &table, Document &document, DriveLink &link, WritePlan plan,
                       RecordArray before)
    : QObject(&link)
    , table_(table)
    , document_(document)
    , link_(link)
    , plan_(std::move(plan))
    , before_(std::move(before))
    , outcomes_(plan_.writes.size(), Outcome::Waiting)
{
    On(&link, &DriveLink::WriteTaken, this, [this](int p) {
        Note(p, Outcome::Written);
        Check();
    });
    On(&link, &DriveLink::ValueRead, this, [this](int p) {
        unread_.removeOne(p);
        Check();
    });
    On(&link, &DriveLink::ComStatusChanged, this, [this] { Check(); });
    On(&link, &DriveLink::WriteRefused, this,
       [this](int p, std::int32_t rawValue, bool *told) { TakeBack(p, rawValue, told); });
}

bool WriteWatch::Has(Outcome outcome) const
{
    return std::find(outcomes_.begin(), outcomes_.end(), outcome) != outcomes_.end();
}

void WriteWatch::Note(int p, Outcome outcome)
{
    for (std::size_t i = 0; i < outcomes_.size(); ++i)
        if (plan_.writes[i].param == p && outcomes_[i] == Outcome::Waiting)
            outcomes_[i] = outcome;
}

void WriteWatch::TakeBack(int p, std::int32_t rawValue, bool *told)
{
    for (std::size_t i = 0; i < outcomes_.size(); ++i) {
        // A value that somebody entered since is not the plan's.
        const PlannedWrite &write = plan_.writes[i];
        if (write.param != p || write.rawValue != rawValue || outcomes_[i] != Outcome::Waiting)
            continue;
        outcomes_[i] = Outcome::Refused;
        *told = true;
        table_.SetValue(p, before_[p].Value, ChangeCause::TakenBack);
        table_.AddReadInterest(p);
        unread_.append(p);
        // Whether the drive runs, which explains most refusals, is older than they are.
        if (table_.LastParam >= Param::DriveState && !unread_.contains(Param::DriveState))
            unread_.append(Param::DriveState);
    }
}

void WriteWatch::Check()
{
    if (settled_)
        return;
    if (link_.PortOpen()) {
        // A value that no packet can carry, or a parameter that this drive does not have.
        for (const PlannedWrite &write : plan_.writes)
            if (table_[write.param].WriteFlag == WriteState::None || write.param > table_.LastParam)
                Note(write.param, Outcome::NotWritten);
        if (Has(Outcome::Waiting) || !unread_.isEmpty())
            return;
    }
    settled_ = true;
    QMetaObject::invokeMethod(
        this, [this] { Guarded([this] { Settle(); }); }, Qt::QueuedConnection);
}

void WriteWatch::Settle()
{
    for (std::size_t i = 0; i < outcomes_.size(); ++i) {
        const PlannedWrite &write = plan_.writes[i];
        ParamRecord &record = table_.Row(write.param);
        if (outcomes_[i] == Outcome::Waiting)
            outcomes_[i] = Outcome::NotWritten;
        if (outcomes_[i] == Outcome::Refused) {
            table_.RemoveReadInterest(write.param);
            if (write.refresh)
                table_.RefreshDependentParams(write.param);
            if (record.Value == write.rawValue)
                outcomes_[i] = Outcome::HasAlready;
        }
        if (write.param != Param::SaveParameters || outcomes_[i] == Outcome::Written)
            continue;
        // A command that did not get through must not strike later, and nothing is saved.
        table_.SetValue(write.param, before_[write.param].Value, ChangeCause::TakenBack);
        record.WriteFlag = WriteState::None;
        document_.DriveModified = true;
    }
    Q_EMIT Settled();
    deleteLater();
}

} // namespace quorvik
