#include "desktop/ValueFacts.h"

#include "compare/ParameterSet.h"
#include "desktop/Desk.h"
#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "model/TextTables.h"

#include <QStringList>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int StopModeType = 21;
constexpr int QuickStop = 1;
/** From this code on the models cannot regenerate and have no quick stop. */
constexpr int FirstNonRegenerativeModel = 17;

} // namespace

ValueFacts::ValueFacts(const Desk &desk, int p)
    : desk_(desk)
    , param_(p)
{
    if (desk.document.FileName == Document::Unnamed())
        return;
    QString failure;
    const ParameterSet file = ParameterSet::FromFile(desk.document.FileName, desk.table, failure);
    // A command in a file is none that would be given.
    if (file.Knows(p) && !Param::IsCommand(p))
        inFile_ = file.records[p];
}

const ParamRecord &ValueFacts::Record() const
{
    return desk_.table[param_];
}

bool ValueFacts::IsOfSameKind(const ParamRecord &record) const
{
    return TypeCode(record.Attributes) == TypeCode(Record().Attributes) &&
           DecimalsOf(record.Attributes) == DecimalsOf(Record().Attributes);
}

QString ValueFacts::Text(std::int32_t rawValue, std::int32_t attributes, bool withUnit) const
{
    const ValueType::Form form = TypeOf(TypeCode(attributes)).form;
    if (form == ValueType::Form::Parameter && rawValue >= 0 && rawValue <= desk_.table.LastParam)
        return desk_.table.FullName(rawValue);
    return form == ValueType::Form::Unit && !withUnit ? NumberText(rawValue, attributes)
                                                      : ShownText(rawValue, attributes);
}

QString ValueFacts::Block() const
{
    return desk_.BlockOf(param_);
}

QString ValueFacts::Values() const
{
    const ParamRecord &record = Record();
    QString text = QStringLiteral("now ") + Text(record.Value, record.Attributes, true);
    if (const QString state = desk_.states.Describe(param_); !state.isEmpty())
        text += QStringLiteral(" (%1)").arg(state);
    text += QStringLiteral(", factory ") + Text(record.Preset, record.Attributes, false);
    if (inFile_)
        text += QStringLiteral(", in the file ") +
                Text(inFile_->Value, inFile_->Attributes, !IsOfSameKind(*inFile_));
    return text;
}

QString ValueFacts::Limits() const
{
    const ParamRecord &record = Record();
    QString range = RangeText(record.Min, record.Max, record.Attributes);
    if (IsEnumerated(TypeCode(record.Attributes))) {
        QStringList options;
        const int count = EnumCount(TypeCode(record.Attributes));
        for (int i = std::max(record.Min, 0); i < count && i <= record.Max; ++i)
            if (HasOption(i))
                options.append(EnumText(i, TypeCode(record.Attributes)));
        range = options.join(QStringLiteral(", "));
    }
    const int accessClass = desk_.table.AccessClass(param_);
    QString access = desk_.table.AccessDescription(param_, accessClass);
    if (accessClass == Access::IcrReadWrite || accessClass == Access::IcrReadOnly)
        access += QStringLiteral(", at stop only");
    return QStringLiteral("range %1; %2").arg(range, access);
}

std::int32_t ValueFacts::FactoryValue() const
{
    return Record().Preset;
}

std::optional<std::int32_t> ValueFacts::FileValue() const
{
    return inFile_ && IsOfSameKind(*inFile_) ? std::optional(inFile_->Value) : std::nullopt;
}

bool ValueFacts::HasOption(int option) const
{
    const int typeCode = TypeCode(Record().Attributes);
    if (option >= EnumCount(typeCode))
        return false;
    return typeCode != StopModeType || option != QuickStop ||
           desk_.table.Value(Param::DriveModel) < FirstNonRegenerativeModel;
}

} // namespace quorvik
