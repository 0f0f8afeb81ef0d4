#pragma once

#include "trend/Trigger.h"

#include <QWidget>
#include <optional>

class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QPushButton;
class QSpinBox;

namespace quorvik
{

class LevelField;
class ParameterTable;
class TrendRecorder;

/** What starts a capture, how long it is, and how many are taken; arms the recorder. */
class TriggerPanel : public QWidget
{
    Q_OBJECT

public:
    TriggerPanel(const ParameterTable &table, TrendRecorder &recorder, QWidget *parent);

    /** Fills the fields; nothing is armed. */
    void SetSetting(const TriggerSetting &setting);
    /** What the fields say. @param refusal gets a sentence where there is none. */
    std::optional<TriggerSetting> Setting(QString *refusal) const;
    /** What was said by the fields last, as far as they made sense. */
    const TriggerSetting &LastSetting() const { return setting_; }
    void FocusKind();

Q_SIGNALS:
    /** A sentence for the user. */
    void Told(const QString &sentence);

private:
    void MakeFields(QGridLayout *grid);
    TriggerKind Kind() const;
    int Signal() const;
    void ListChannels();
    /** The fields that the chosen kind and channel need. @param raw of level, upper end and hysteresis. */
    void ShapeFields();
    void Learn();
    void ArmOrDisarm();
    void TriggerNow();
    void FollowState();

    const ParameterTable &table_;
    TrendRecorder &recorder_;
    TriggerSetting setting_;
    QComboBox *comboKind_;
    QComboBox *comboSignal_;
    LevelField *level_;
    LevelField *high_;
    LevelField *band_;
    QDoubleSpinBox *length_;
    QSpinBox *before_;
    QDoubleSpinBox *holdOff_;
    QSpinBox *count_;
    QPushButton *commandArm_;
    QWidget *labelSignal_ = nullptr;
    QWidget *labelLevel_ = nullptr;
    QWidget *labelHigh_ = nullptr;
    QWidget *labelBand_ = nullptr;
};

} // namespace quorvik
