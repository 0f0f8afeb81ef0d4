#pragma once

#include "model/ParamTable.h"

#include <QWidget>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;

namespace quorvik
{

/** Takes a value of a parameter, in the numbers or texts in which the program shows it. */
class LevelField : public QWidget
{
    Q_OBJECT

public:
    /** @param name the objectName of its text box. @param spoken what it is for. */
    LevelField(const QString &name, const QString &spoken, QWidget *parent);

    /** It is of this parameter from now on. @param isDistance a difference of two values, 0 or more. */
    void SetRecord(const ParamRecord &record, bool isDistance);
    void SetRaw(std::int32_t rawValue);
    /** Nothing while what was entered is no value of the parameter. */
    std::optional<std::int32_t> Raw() const;
    /** What may be entered. */
    QString LimitsSentence() const;

Q_SIGNALS:
    void Edited();

private:
    QLineEdit *text_;
    QComboBox *list_;
    QLabel *unit_;
    ParamRecord record_;
    bool isDistance_ = false;
};

} // namespace quorvik
