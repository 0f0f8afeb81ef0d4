#include "generator/ProjectWriter.h"

#include <QFile>
#include <QXmlStreamWriter>

namespace quorvik::help
{

namespace
{

void WriteContents(QXmlStreamWriter &xml, const QList<ContentsEntry> &contents)
{
    int depth = -1;
    for (const ContentsEntry &entry : contents) {
        for (; depth >= entry.depth; --depth)
            xml.writeEndElement();
        depth = entry.depth;
        xml.writeStartElement(QStringLiteral("section"));
        xml.writeAttribute(QStringLiteral("title"), entry.title);
        if (!entry.topic.isEmpty())
            xml.writeAttribute(QStringLiteral("ref"), entry.topic);
    }
    for (; depth >= 0; --depth)
        xml.writeEndElement();
}

void WriteKeyword(QXmlStreamWriter &xml, const QString &word, const QString &topic)
{
    xml.writeEmptyElement(QStringLiteral("keyword"));
    xml.writeAttribute(QStringLiteral("name"), word);
    xml.writeAttribute(QStringLiteral("id"), topic + u'#' + word);
    xml.writeAttribute(QStringLiteral("ref"), topic);
}

void WriteFilterSection(QXmlStreamWriter &xml, const Topics &topics, const QStringList &files)
{
    xml.writeStartElement(QStringLiteral("filterSection"));
    xml.writeStartElement(QStringLiteral("toc"));
    WriteContents(xml, topics.Contents());
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("keywords"));
    for (const Topic &topic : topics.All()) {
        WriteKeyword(xml, topic.title, topic.name);
        for (const QString &word : topic.keywords)
            WriteKeyword(xml, word, topic.name);
    }
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("files"));
    for (const QString &file : files)
        xml.writeTextElement(QStringLiteral("file"), file);
    xml.writeEndElement();
    xml.writeEndElement();
}

template<typename Body> void WriteXml(const QString &path, QStringList &problems, Body body)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        problems.append(path + QStringLiteral(": ") + file.errorString());
        return;
    }
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    body(xml);
    xml.writeEndDocument();
}

} // namespace

void WriteProject(const Topics &topics, const QStringList &files, const QString &outFolder,
                  QStringList &problems)
{
    WriteXml(outFolder + QStringLiteral("/quorvik.qhp"), problems, [&](QXmlStreamWriter &xml) {
        xml.writeStartElement(QStringLiteral("QtHelpProject"));
        xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
        xml.writeTextElement(QStringLiteral("namespace"), QStringLiteral("quorvik.help"));
        xml.writeTextElement(QStringLiteral("virtualFolder"), QStringLiteral("doc"));
        WriteFilterSection(xml, topics, files);
        xml.writeEndElement();
    });
}

} // namespace quorvik::help
