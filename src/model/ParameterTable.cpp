#include "model/ParameterTable.h"

#include "model/Conversions.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

#include <utility>

namespace quorvik
{

ParameterTable::ParameterTable()
    : signals_(std::make_unique<TableSignals>())
{
}

ParameterTable::ParameterTable(const ParameterTable &other)
    : PresetTable(other.PresetTable)
    , FileLastParam(other.FileLastParam)
    , LastParam(other.LastParam)
    , WritePending(other.WritePending)
    , DriveStateUnread(other.DriveStateUnread)
    , EditParamNumber(other.EditParamNumber)
    , records_(other.records_)
    , signals_(std::make_unique<TableSignals>())
    , portOpen_(other.portOpen_)
{
}

ParameterTable::~ParameterTable() = default;

void ParameterTable::SetValue(int p, std::int32_t rawValue, ChangeCause cause)
{
    ParamRecord &record = records_[p];
    const std::int32_t before = std::exchange(record.Value, rawValue);
    if (before != rawValue)
        Q_EMIT signals_->Changed({.param = p, .before = before, .after = rawValue, .cause = cause});
}

void ParameterTable::BeginIntent(const IntentInfo &info)
{
    if (intentDepth_++ > 0)
        return;
    intent_ = info;
    Q_EMIT signals_->IntentBegan();
}

void ParameterTable::NoteIntent(const QString &what)
{
    Q_EMIT signals_->IntentNoted(what);
}

void ParameterTable::EndIntent()
{
    if (intentDepth_ == 1)
        Q_EMIT signals_->IntentEnded();
    --intentDepth_;
}

bool ParameterTable::AttrBit(std::int32_t mask, int p) const
{
    return (records_[p].Attributes & mask) > 0;
}

bool ParameterTable::DriveIsStopped() const
{
    const std::int32_t state = Value(Param::DriveState);
    return state == 0 || state == 8;
}

int ParameterTable::FindLinkSource(int p) const
{
    if (p == 0)
        return 0;
    for (int i = 1; i <= LastParam; ++i)
        if (AttrBit(Attr::Destination, i) && Value(i) == p)
            return i;
    return 0;
}

int ParameterTable::AccessClass(int p) const
{
    if (AttrBit(Attr::ReadOnly, p))
        return Access::ReadOnly;
    if (AttrBit(Attr::Icr, p))
        return DriveIsStopped() ? Access::IcrReadWrite : Access::IcrReadOnly;
    return FindLinkSource(p) > 0 ? Access::LinkedDestination : Access::ReadWrite;
}

QString ParameterTable::AccessDescription(int p, int accessClass) const
{
    QString text = AccessText(accessClass);
    if (accessClass == Access::LinkedDestination) {
        const int source = FindLinkSource(p);
        text += QStringLiteral(" from (%1) ").arg(source) + records_[source].Name;
    }
    return text;
}

bool ParameterTable::CanWriteParam(int p) const
{
    if (LastParam < 0)
        return true;
    if (AttrBit(Attr::ReadOnly, p) || (AttrBit(Attr::Icr, p) && !DriveIsStopped()))
        return false;
    for (int i = 0; i <= LastParam; ++i)
        if (AttrBit(Attr::Destination, i) && Value(i) == p)
            return false;
    return true;
}

bool ParameterTable::IsModelDefined() const
{
    return ModelText(Value(Param::DriveModel)) != ModelText(0);
}

bool ParameterTable::IsRegenerative() const
{
    return (Value(Param::DriveModel) & 16) == 0;
}

bool ParameterTable::IsInRange(const QString &rawText, int p) const
{
    const double raw = CDbl(rawText);
    return raw >= records_[p].Min && raw <= records_[p].Max;
}

void ParameterTable::SetParamValue(int p, std::int32_t rawValue, bool modified, bool refresh)
{
    QueueWrite(p, rawValue);
    if (refresh)
        RefreshDependentParams(p);
    Q_EMIT signals_->Entered(p, modified);
}

void ParameterTable::QueueWrite(int p, std::int32_t rawValue)
{
    ParamRecord &record = records_[p];
    record.WriteFlag = WriteState::Held;
    SetValue(p, rawValue, ChangeCause::Entered);
    record.WriteFlag = WriteState::Queued;
    record.WriteFirst = p == Param::Run || p == Param::Stop || p == Param::Jog;
    WritePending = true;
}

void ParameterTable::DropCommand(int p)
{
    records_[p].WriteFlag = WriteState::None;
    SetValue(p, 0, ChangeCause::Command);
}

void ParameterTable::DropAllWrites()
{
    for (int i = 0; i <= records_.UpperBound(); ++i)
        records_[i].WriteFlag = WriteState::None;
    WritePending = false;
}

void ParameterTable::SetAllWriteFlags(std::uint8_t state)
{
    for (int i = 0; i <= LastParam; ++i) {
        if (Param::IsClock(i) || AttrBit(Attr::ReadOnly, i))
            continue;
        ParamRecord &record = records_[i];
        if (record.WriteFlag != WriteState::Queued) {
            // As one of many it waits for its turn, and gives no command.
            record.WriteFirst = false;
            if (Param::IsCommand(i) && state == WriteState::Queued)
                SetValue(i, 0, ChangeCause::Command);
        }
        record.WriteFlag = state;
    }
    if (state == WriteState::Queued)
        WritePending = true;
}

void ParameterTable::SetAllReadFlags(int delta)
{
    if (delta < -1 || delta > 1)
        throw RuntimeFailure(QStringLiteral("Invalid value of NewState in Sub SetAllReadFlags."));
    for (int i = 0; i <= LastParam; ++i)
        ChangeReadFlag(i, delta);
}

void ParameterTable::AddReadInterest(int p)
{
    ChangeReadFlag(p, 1);
}

void ParameterTable::RemoveReadInterest(int p)
{
    ChangeReadFlag(p, -1);
}

void ParameterTable::ChangeReadFlag(int p, int delta)
{
    ParamRecord &record = records_[p];
    try {
        record.ReadFlag = ToByte(record.ReadFlag + delta);
    } catch (const RuntimeFailure &failure) {
        throw failure.About(FullName(p));
    }
}

QString ParameterTable::FullName(int p) const
{
    return QStringLiteral("(%1) ").arg(p) + records_[p].Name;
}

void ParameterTable::ResetToDefaults()
{
    LastParam = FileLastParam;
    records_.Resize(FileLastParam);
    for (int i = 0; i <= FileLastParam; ++i) {
        ParamRecord &record = records_[i];
        ParamRecord factory = PresetTable[i];
        factory.ReadFlag = record.ReadFlag;
        factory.Value = record.Value;
        record = factory;
        SetValue(i, PresetTable[i].Value, ChangeCause::Factory);
    }
    RefreshAllDependents();
}

} // namespace quorvik
