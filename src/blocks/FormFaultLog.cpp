#include "blocks/BlockForm.h"

#include "blocks/FaultRecord.h"

#include "platform/RuntimeFailure.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextDocument>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {FaultReset, PowerOnReset, LatchedFault, PresentFault};

class FormFaultLog final : public BlockForm
{
public:
    using BlockForm::BlockForm;

protected:
    void Draw(Drawing &d) override
    {
        QFrame *picture = MakeLog();
        const double height = DrawLog(d, picture);
        const double y = height + 2;
        const QRectF faults = Table({LogX, y}, QStringLiteral("Faults"), {PresentFault, LatchedFault});
        const QRectF reset =
            Table({faults.right() + 10, y}, QStringLiteral("Reset"), {FaultReset, PowerOnReset});
        view().Place(picture, {LogX, 0, reset.right() - LogX, height});

        commandClearFault_ = AddButton(QStringLiteral("CommandClearFault"), QStringLiteral("&Clear Fault"),
                                       QStringLiteral("Clears the latched fault in the drive"));
        On(commandClearFault_, &QPushButton::clicked, this, [this] { Write(Param::ClearFault, 1); });
        // The drive has no command behind this button; it is there and does nothing.
        AddButton(QStringLiteral("CommandClearFaultLog"), QStringLiteral("Clear Fault Log"));

        for (int p = FaultLog::First; p < FaultLog::First + FaultLog::Records * FaultLog::Step; ++p)
            AddExtraInterest(p);
    }

    void Tick() override
    {
        commandClearFault_->setEnabled(RowValue(LatchedFault) != 0);
        QString log;
        std::optional<RuntimeFailure> failure;
        for (int record = 0; record < FaultLog::Records; ++record) {
            const int base = FaultLog::First + record * FaultLog::Step;
            // A bad day in one record is told, and hides neither its faults nor the other records.
            try {
                log += GetFaultData(desk().table, base);
            } catch (const RuntimeFailure &badDay) {
                failure = badDay;
                log += GetFaultData(desk().table, base, QStringLiteral("no day"));
            }
            log += QStringLiteral("\r\n");
        }
        // What the user scrolled to or selected stays while the log does.
        if (log != log_) {
            log_ = log;
            textFaultLog_->setPlainText(log);
        }
        if (failure)
            throw RuntimeFailure(*failure);
    }

private:
    static constexpr double LogX = 14;

    QFrame *MakeLog()
    {
        auto *picture = new QFrame(&view());
        picture->setObjectName(QStringLiteral("Picture1"));
        picture->setFrameShape(QFrame::StyledPanel);
        textFaultLog_ = new QPlainTextEdit(picture);
        textFaultLog_->setObjectName(QStringLiteral("TextFaultLog"));
        textFaultLog_->setAccessibleName(QStringLiteral("Fault log, most recent first"));
        textFaultLog_->setReadOnly(true);
        textFaultLog_->setTabChangesFocus(true);
        textFaultLog_->setFrameShape(QFrame::NoFrame);
        textFaultLog_->setLineWrapMode(QPlainTextEdit::NoWrap);
        textFaultLog_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        auto *layout = new QHBoxLayout(picture);
        layout->setContentsMargins({});
        layout->addWidget(textFaultLog_);

        return picture;
    }

    /** Marks the first and the last line. @return the height of five lines with a scroll bar, in cells. */
    double DrawLog(Drawing &d, const QFrame *picture)
    {
        const double pixel = 1.0 / view().Unit();
        const double line = textFaultLog_->fontMetrics().lineSpacing() * pixel;
        const double inset = (textFaultLog_->document()->documentMargin() + picture->frameWidth()) * pixel;
        const double bar = textFaultLog_->horizontalScrollBar()->sizeHint().height() * pixel;
        d.Label(QStringLiteral("LabelLatest"), QStringLiteral("Most Recent"), {LogX - 1, inset + line / 2},
                Qt::AlignRight);
        d.Label(QStringLiteral("Label2"), QStringLiteral("Oldest"),
                {LogX - 1, inset + (FaultLog::Records - 0.5) * line}, Qt::AlignRight);
        d.Path({QPointF(LogX - 4, inset + 1.5 * line),
                QPointF(LogX - 4, inset + (FaultLog::Records - 1.5) * line)},
               true);
        return 2 * inset + FaultLog::Records * line + bar + 2 * pixel;
    }

    QPlainTextEdit *textFaultLog_ = nullptr;
    QPushButton *commandClearFault_ = nullptr;
    QString log_;
};

} // namespace

constexpr BlockDescriptor BlockFaultLog = {.form = "FormFaultLog",
                                           .window = "Fault Log",
                                           .helpTopic = "Fault Log.htm",
                                           .rows = Rows,
                                           .make = MakeBlock<FormFaultLog, BlockFaultLog>};

} // namespace quorvik
