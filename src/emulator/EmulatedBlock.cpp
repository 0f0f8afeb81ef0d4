#include "emulator/EmulatedBlock.h"

#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"

#include <QStringList>

namespace quorvik
{

std::int32_t EmulatedBlock::Value(int p) const
{
    return Naming({p}, [&] { return table_.Value(p); });
}

std::int32_t EmulatedBlock::Followed(int selector) const
{
    return Naming({selector}, [&] { return table_.Value(table_.Value(selector)); });
}

std::int32_t EmulatedBlock::Sum(int left, int right) const
{
    return Naming({left, right}, [&] { return CheckedAdd(table_.Value(left), table_.Value(right)); });
}

std::int32_t EmulatedBlock::Difference(int left, int right) const
{
    return Naming({left, right}, [&] { return CheckedSubtract(table_.Value(left), table_.Value(right)); });
}

std::int32_t EmulatedBlock::Negated(int p) const
{
    return Naming({p}, [&] { return CheckedNegate(table_.Value(p)); });
}

void EmulatedBlock::Store(int p, std::int32_t raw) const
{
    Naming({p}, [&] { StoreComputed(p, raw); });
}

void EmulatedBlock::StoreFollowed(int selector, std::int32_t raw) const
{
    Naming({selector}, [&] { StoreComputed(table_.Value(selector), raw); });
}

void EmulatedBlock::StoreFollowedClamped(int selector, double y, std::int32_t (*convert)(double)) const
{
    Naming({selector}, [&] {
        const int p = table_.Value(selector);
        const ParamRecord &record = table_[p];
        const std::int32_t raw = y > record.Max ? record.Max : y < record.Min ? record.Min : convert(y);
        StoreComputed(p, raw);
    });
}

void EmulatedBlock::StoreComputed(int p, std::int32_t raw) const
{
    table_.SetValue(p, raw, ChangeCause::Emulated);
    Q_EMIT table_.Signals().Computed(p);
}

void EmulatedBlock::Rethrow(std::initializer_list<int> parameters, const RuntimeFailure &failure) const
{
    QStringList numbers;
    for (const int p : parameters)
        numbers.append(QString::number(p));
    QString name = QString::fromLatin1(name_);
    if (member_ != 0)
        name += u' ' + QString::number(member_);
    throw RuntimeFailure(
        QStringLiteral("%1 (%2): %3").arg(name, numbers.join(QStringLiteral(", ")), failure.Sentence()));
}

} // namespace quorvik
