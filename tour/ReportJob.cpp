#include "tour/Journey.h"

#include "report/forms/FormCommissioningReport.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QTest>

namespace quorvik
{

namespace
{

FormCommissioningReport *Window(Tour &tour)
{
    const QWidget *frame = tour.User().WindowTitled(QStringLiteral("Commissioning Report"));
    return frame ? frame->findChild<FormCommissioningReport *>() : nullptr;
}

template<typename Control> Control *In(Tour &tour, const char *name)
{
    FormCommissioningReport *window = Window(tour);
    return window ? window->findChild<Control *>(QString::fromLatin1(name)) : nullptr;
}

bool Says(Tour &tour, const char *label, const char *words)
{
    const auto *line = In<QLabel>(tour, label);
    return line && !QApplication::activeModalWidget() && line->text().contains(QLatin1String(words));
}

/** A name for the file dialog that is open or about to open. */
void AddFileName(Tour &tour, const QString &path, const QString &then)
{
    tour.Add(
        QStringLiteral("A name is typed"),
        [] {
            const QWidget *modal = QApplication::activeModalWidget();
            return modal && modal->inherits("QFileDialog");
        },
        [&tour, path] { return tour.User().TypeFileName(path); });
    tour.Add(
        then, [] { return Hands::AcceptButton() != nullptr; },
        [&tour] { return tour.User().Click(Hands::AcceptButton()); });
}

void AddKeeping(Tour &tour)
{
    // A drive that was read anew has no file of its own.
    const QString file = QDir(tour.PictureFolder()).absoluteFilePath(QStringLiteral("pump.Svx"));
    tour.Do(QStringLiteral("The machine is set up: File, Save As"), [&tour, file] {
        QFile::remove(file);
        return tour.User().ChooseMenu(QStringLiteral("mnuFileSave(1)"));
    });
    AddFileName(tour, file, QStringLiteral("The set is saved"));
}

void AddPlace(Tour &tour)
{
    tour.Add(
        QStringLiteral("Its name stands in the title; File, Commissioning Report"),
        [&tour] {
            return !QApplication::activeModalWidget() &&
                   tour.TheProgram().Main().windowTitle().endsWith(QLatin1String("pump.Svx]"));
        },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileReport")); });
    tour.Add(
        QStringLiteral(
            "Its pages say that nothing was compared yet; site, machine, customer and person are typed"),
        [&tour] { return Says(tour, "LabelVerification", "not compared"); },
        [&tour] {
            tour.TakePicture(QStringLiteral("51-report-not-compared"));
            const std::pair<const char *, const char *> fields[] = {{"TextSite", "Water works, hall 2"},
                                                                    {"TextMachine", "Pump 3"},
                                                                    {"TextCustomer", "Lakeside Water"},
                                                                    {"TextPerson", "Anna Berg"}};
            for (const auto &[field, text] : fields) {
                In<QLineEdit>(tour, field)->setFocus();
                if (QString failure = Hands::TypeOver(QString::fromLatin1(text)); !failure.isEmpty())
                    return failure;
            }
            return tour.User().Click(In<QWidget>(tour, "CheckKeep"));
        });
    tour.Do(QStringLiteral("The newest recording is ticked"), [&tour] {
        auto *recordings = In<QListWidget>(tour, "ListRecordings");
        recordings->setCurrentRow(0);
        QTest::keyClick(recordings, Qt::Key_Space);
        return recordings->item(0)->checkState() == Qt::Checked
                   ? QString()
                   : QStringLiteral("no recording could be ticked");
    });
}

/** The text of the PDF's pages. */
QString TextOf(const QString &pdf, QString &failure)
{
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    if (!reader.waitForFinished() || reader.exitCode() != 0)
        failure = QStringLiteral("pdftotext cannot read ") + pdf;
    return QString::fromUtf8(reader.readAllStandardOutput()).simplified();
}

QString LookAt(Tour &tour, const QString &pdf)
{
    QString failure;
    const QString text = TextOf(pdf, failure);
    for (const char *words : {"The drive holds these settings", "Water works, hall 2", "Anna Berg"})
        if (failure.isEmpty() && !text.contains(QLatin1String(words)))
            failure = QStringLiteral("the report does not say \"%1\"").arg(QLatin1String(words));
    if (failure.isEmpty() && text.contains(QLatin1String("None was chosen.")))
        failure = QStringLiteral("the report has no recording");
    tour.Note(QStringLiteral("report written: %1, %2 bytes").arg(pdf).arg(QFile(pdf).size()));
    return failure;
}

void AddPdf(Tour &tour)
{
    const QString file = QDir(tour.PictureFolder()).absoluteFilePath(QStringLiteral("report.pdf"));
    tour.Do(QStringLiteral("Save as PDF"), [&tour, file] {
        QFile::remove(file);
        return tour.User().Click(In<QWidget>(tour, "CommandPdf"));
    });
    AddFileName(tour, file, QStringLiteral("Save: the drive is read once more"));
    tour.Add(
        QStringLiteral("The file says that the drive holds these settings, and who has set it up"),
        [&tour, file] { return QFile::exists(file) && Says(tour, "LabelOutcome", "Saved to"); },
        [&tour, file] {
            tour.TakePicture(QStringLiteral("51-report"));
            Window(tour)->close();
            return LookAt(tour, file);
        });
}

} // namespace

void AddReportJob(Tour &tour)
{
    AddKeeping(tour);
    AddPlace(tour);
    tour.Do(QStringLiteral("Compare Now"),
            [&tour] { return tour.User().Click(In<QWidget>(tour, "CommandCompare")); });
    tour.Add(
        QStringLiteral("Open set, file and drive are the same"),
        [&tour] { return Says(tour, "LabelVerification", "all "); }, [] { return QString(); });
    AddPdf(tour);
    tour.Add(
        QStringLiteral("File, Save: the place stays with the set"), [&tour] { return !Window(tour); },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileSave(0)")); });
}

} // namespace quorvik
