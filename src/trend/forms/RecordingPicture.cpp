#include "trend/forms/RecordingPicture.h"

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendView.h"
#include "trend/forms/TrendPlot.h"

#include <QTemporaryDir>

namespace quorvik
{

namespace
{

constexpr QSize Plots(900, 420); ///< in pixels, without head and foot

} // namespace

QImage PictureOf(const TrendDataPtr &data, ParameterTable &table)
{
    // A view stands on a recorder; this one never records.
    const Document document(table);
    DriveLink link(table);
    DriveEmulator emulator(table);
    TrendRecorder recorder(table, document, link, emulator);
    TrendView view(recorder);
    TrendPlot plot(view);
    plot.resize(Plots);
    view.Show(data);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plots.png"));
    return plot.Export(path).isEmpty() ? QImage(path) : QImage();
}

} // namespace quorvik
