#pragma once

#include "desktop/Form.h"
#include "trend/TrendView.h"

namespace quorvik
{

class TrendHost;
class TrendPlot;
struct Desk;

/** The trend recorder's window: plots, channels, trigger, figures, recordings, and the tuning page. */
class FormTrend : public Form
{
    Q_OBJECT

public:
    static QString Name() { return QStringLiteral("FormTrend"); }

    FormTrend(Desk &desk, TrendHost &host);

    /** Adds a parameter as a fast channel, or a slow one where there is no room, and shows it. */
    void AddChannel(int p);
    /** Shows a recording's file. */
    void OpenRecording(const QString &path);

private:
    TrendHost &host_;
    TrendView view_;
    TrendPlot *plot_;
};

} // namespace quorvik
