#include "model/Model.h"

#include "model/Conversions.h"
#include "model/PathFunctions.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Asker.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

Model::Model() = default;

const QString &Model::Unnamed()
{
    static const QString unnamed = QStringLiteral("unnamed");
    return unnamed;
}

void Model::InitColors()
{
    DefaultColors = {0, 65280, 255, 8355711, 16711680, 8355711};
    // The sixth entry stays 0 until the colour settings' Default command.
    Colors.fill(0);
}

bool Model::AttrBit(std::int32_t mask, int p) const
{
    return (ParamTable[p].Attributes & mask) > 0;
}

bool Model::DriveIsStopped() const
{
    const std::int32_t state = Value(Param::DriveState);
    return state == 0 || state == 8;
}

int Model::FindLinkSource(int p) const
{
    if (p == 0)
        return 0;
    for (int i = 1; i <= LastParam; ++i)
        if (AttrBit(Attr::Destination, i) && Value(i) == p)
            return i;
    return 0;
}

int Model::AccessClass(int p) const
{
    if (AttrBit(Attr::ReadOnly, p))
        return Access::ReadOnly;
    if (AttrBit(Attr::Icr, p))
        return DriveIsStopped() ? Access::IcrReadWrite : Access::IcrReadOnly;
    return FindLinkSource(p) > 0 ? Access::LinkedDestination : Access::ReadWrite;
}

QString Model::AccessDescription(int p, int accessClass) const
{
    QString text = AccessText(accessClass);
    if (accessClass == Access::LinkedDestination) {
        const int source = FindLinkSource(p);
        text += QStringLiteral(" from (%1) ").arg(source) + ParamTable[source].Name;
    }
    return text;
}

bool Model::CanWriteParam(int p) const
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

bool Model::IsModelDefined() const
{
    return ModelText(Value(Param::DriveModel)) != ModelText(0);
}

bool Model::IsRegenerative() const
{
    return (Value(Param::DriveModel) & 16) == 0;
}

bool Model::IsInRange(const QString &rawText, int p) const
{
    const double raw = CDbl(rawText);
    return raw >= ParamTable[p].Min && raw <= ParamTable[p].Max;
}

void Model::SetParamValue(int p, std::int32_t rawValue, bool modified, bool refresh)
{
    QueueWrite(p, rawValue);
    if (refresh)
        RefreshDependentParams(p);
    if (p != Param::SaveParameters && p != Param::LoadParameters) {
        FileModified = modified;
        DriveModified = modified;
        HasUnsavedEdits |= modified;
    }
    UpdateTitle();
}

void Model::QueueWrite(int p, std::int32_t rawValue)
{
    ParamRecord &record = ParamTable[p];
    record.WriteFlag = WriteState::Held;
    record.Value = rawValue;
    record.WriteFlag = WriteState::Queued;
    record.WriteFirst = p == Param::Run || p == Param::Stop || p == Param::Jog;
    WritePending = true;
}

void Model::DropAllWrites()
{
    for (int i = 0; i <= ParamTable.UpperBound(); ++i)
        ParamTable[i].WriteFlag = WriteState::None;
    WritePending = false;
}

void Model::SetAllWriteFlags(std::uint8_t state)
{
    for (int i = 0; i <= LastParam; ++i) {
        const bool isClock = i >= Param::ClockFirst && i <= Param::ClockLast;
        if (isClock || AttrBit(Attr::ReadOnly, i))
            continue;
        ParamRecord &record = ParamTable[i];
        if (record.WriteFlag != WriteState::Queued) {
            // As one of many it waits for its turn, and gives no command.
            record.WriteFirst = false;
            if (Param::IsCommand(i) && state == WriteState::Queued)
                record.Value = 0;
        }
        record.WriteFlag = state;
    }
    if (state == WriteState::Queued)
        WritePending = true;
}

void Model::SetAllReadFlags(int delta)
{
    if (delta < -1 || delta > 1)
        throw RuntimeFailure(QStringLiteral("Invalid value of NewState in Sub SetAllReadFlags."));
    for (int i = 0; i <= LastParam; ++i)
        ChangeReadFlag(i, delta);
}

void Model::AddReadInterest(int p)
{
    ChangeReadFlag(p, 1);
}

void Model::RemoveReadInterest(int p)
{
    ChangeReadFlag(p, -1);
}

void Model::ChangeReadFlag(int p, int delta)
{
    ParamRecord &record = ParamTable[p];
    try {
        record.ReadFlag = ToByte(record.ReadFlag + delta);
    } catch (const RuntimeFailure &failure) {
        throw failure.About(FullName(p));
    }
}

QString Model::FullName(int p) const
{
    return QStringLiteral("(%1) ").arg(p) + ParamTable[p].Name;
}

void Model::ResetToDefaults()
{
    LastParam = FileLastParam;
    ParamTable.Resize(FileLastParam);
    for (int i = 0; i <= FileLastParam; ++i) {
        ParamRecord &record = ParamTable[i];
        const std::uint8_t readFlag = record.ReadFlag;
        record = PresetTable[i];
        record.ReadFlag = readFlag;
    }
    HalfRead = false;
    RefreshAllDependents();
}

void Model::ClearVirtualSettings()
{
    VirtualSettings.fill(VirtualSetting{});
}

QString Model::Title() const
{
    return AppTitle() + QStringLiteral(" - [") + FileTitle(FileName) +
           (HalfRead ? QStringLiteral(", half read") : QString()) +
           (FileModified ? QStringLiteral("*]") : QStringLiteral("]"));
}

void Model::MarkFile(bool modified)
{
    FileModified = modified;
    HasUnsavedEdits = modified;
    UpdateTitle();
}

void Model::UpdateTitle()
{
    Q_EMIT TitleChanged(Title());
}

} // namespace quorvik
