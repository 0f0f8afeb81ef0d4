#include "support/TestDesk.h"
#include "wizards/basic/BasicPictures.h"
#include "wizards/io/IOPictures.h"

#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace quorvik::testing
{

TEST(PicturesTest, EveryStateAndTextOfAFileIsGivenAndNoOther)
{
    TestDesk desk;
    std::map<QString, std::set<std::string>> given;
    const auto add = [&given](const PictureFile &picture) {
        std::set<std::string> &names = given[Name(picture.name)];
        for (const QByteArray &state : picture.states.split(' '))
            names.insert(state.toStdString());
        for (const QByteArray &text : picture.texts.keys())
            names.insert('{' + text.toStdString() + '}');
        names.erase("");
    };
    for (const int model : {5, 21})
        for (int i = 0; i < 12; ++i) {
            desk.table.Row(Param::DriveModel).Value = model;
            BasicSetup setup(desk.table, desk.document);
            setup.operatingMode = i % 3;
            setup.feedback = i % 4 - 1;
            setup.startStopLogic = i % 2;
            for (const auto picture :
                 {DriveModelPicture, OperatingModePicture, NameplatePicture, MaxSpeedPicture,
                  ReferencesPicture, StartStopPicture, CurrentLimitsPicture})
                add(picture(setup));
            add(FeedbackPicture(setup, {1, 1, 1}));
        }
    for (int i = 0; i < 6; ++i) {
        IOSetup setup(desk.table, desk.document);
        setup.branch = i % 2;
        setup.inputType = setup.outputType = i % 3;
        setup.input = setup.output = 0;
        setup.polarity = i % 2;
        for (const auto picture :
             {BranchPicture, InputTerminalsPicture, OutputTerminalsPicture, DestinationPicture, SourcePicture,
              AnalogTypePicture, CalibrationPicture, InputValuesPicture, OutputValuesPicture})
            add(picture(setup));
    }
    add(SpeedProfilePicture(true));

    static const QRegularExpression name(QStringLiteral(" class=\"([^\"]*)\"|(\\{\\w+\\})"));
    for (const QFileInfo &file : QDir(QStringLiteral(":/pictures")).entryInfoList()) {
        QFile svg(file.filePath());
        ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
        std::set<std::string> asked;
        for (const auto &match : name.globalMatch(QString::fromUtf8(svg.readAll())))
            for (const QString &word : (match.captured(1) + match.captured(2)).split(u' '))
                asked.insert(word.toStdString());
        EXPECT_EQ(asked, given[file.baseName()]) << file.baseName().toStdString();
        given.erase(file.baseName());
    }
    EXPECT_TRUE(given.empty()) << given.begin()->first.toStdString() << " is no file";
}

} // namespace quorvik::testing
