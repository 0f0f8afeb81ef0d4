#include "tour/Program.h"

#include "platform/Guard.h"

#include <QApplication>

namespace quorvik
{

namespace
{

constexpr int twipsPerPixel = 15;
constexpr QSize windowSize(1366, 768);

} // namespace

Program::Program()
    : programFolder_(QApplication::applicationDirPath())
    , settings_(profile_.filePath(QStringLiteral("Quorvik.ini")))
    , help_(programFolder_ + QStringLiteral("/quorvik.qch"), profile_.filePath(QStringLiteral("help")),
            settings_)
{
    const auto store = [this](const char *section, const char *key, const QString &text) {
        settings_.SaveSetting(QString::fromLatin1(section), QString::fromLatin1(key), text);
    };
    store("Options", "CommPort", QStringLiteral("16"));
    store("Ports", "Com16", DriveLinkPath());
    store("Startup", "Left", QStringLiteral("0"));
    store("Startup", "Top", QStringLiteral("0"));
    store("Startup", "Width", QString::number(windowSize.width() * twipsPerPixel));
    store("Startup", "Height", QString::number(windowSize.height() * twipsPerPixel));
    SetFailureReporter([this](const RuntimeFailure &failure) {
        asker_.MsgBox(failure.Sentence(), MsgButtons::Ok, MsgIcon::Critical, AppTitle());
    });
}

void Program::Start()
{
    QMetaObject::invokeMethod(
        this, [this] { Guarded([this] { Load(); }); }, Qt::QueuedConnection);
}

void Program::Load()
{
    main_.reset();
    main_ = std::make_unique<MDIFormMain>(
        Surroundings{asker_, settings_, help_, programFolder_, QApplication::applicationFilePath(),
                     profile_.filePath(QStringLiteral("Quorvik.lock")),
                     profile_.filePath(QStringLiteral("data")), LinkTimings{}});
    main_->Load(QString());
}

} // namespace quorvik
