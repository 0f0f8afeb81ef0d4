#include "emulator/EmulatedBlock.h"

#include "model/Model.h"
#include "platform/Arithmetic.h"

#include <QStringList>

namespace quorvik
{

std::int32_t EmulatedBlock::Value(int p) const
{
    return Naming({p}, [&] { return model_.Value(p); });
}

std::int32_t EmulatedBlock::Followed(int selector) const
{
    return Naming({selector}, [&] { return model_.Value(model_.Value(selector)); });
}

std::int32_t EmulatedBlock::Sum(int left, int right) const
{
    return Naming({left, right}, [&] { return CheckedAdd(model_.Value(left), model_.Value(right)); });
}

std::int32_t EmulatedBlock::Difference(int left, int right) const
{
    return Naming({left, right}, [&] { return CheckedSubtract(model_.Value(left), model_.Value(right)); });
}

std::int32_t EmulatedBlock::Negated(int p) const
{
    return Naming({p}, [&] { return CheckedNegate(model_.Value(p)); });
}

void EmulatedBlock::Store(int p, std::int32_t raw) const
{
    Naming({p}, [&] { model_.ParamTable[p].Value = raw; });
}

void EmulatedBlock::StoreFollowed(int selector, std::int32_t raw) const
{
    Naming({selector}, [&] { model_.ParamTable[model_.Value(selector)].Value = raw; });
}

void EmulatedBlock::StoreFollowedClamped(int selector, double y, std::int32_t (*convert)(double)) const
{
    Naming({selector}, [&] {
        ParamRecord &record = model_.ParamTable[model_.Value(selector)];
        if (y > record.Max)
            record.Value = record.Max;
        else if (y < record.Min)
            record.Value = record.Min;
        else
            record.Value = convert(y);
    });
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
