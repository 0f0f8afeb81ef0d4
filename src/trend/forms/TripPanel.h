#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;

namespace quorvik
{

class ParameterTable;
class TrendRecorder;
class TripTrend;

/** The recording of the time before a trip: on or off, and its channels. */
class TripPanel : public QWidget
{
    Q_OBJECT

public:
    TripPanel(const ParameterTable &table, TrendRecorder &recorder, TripTrend &trips, QWidget *parent);

Q_SIGNALS:
    void Changed();
    /** A sentence for the user. */
    void Told(const QString &sentence);

private:
    void UseThese();
    void UseUsual();
    void Follow();

    const ParameterTable &table_;
    TrendRecorder &recorder_;
    TripTrend &trips_;
    QCheckBox *checkOn_;
    QLabel *labelChannels_;
};

} // namespace quorvik
