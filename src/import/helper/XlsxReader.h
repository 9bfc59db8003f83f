#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QStringList>

#include "SpreadsheetReader.h"

class ZipContainer;

// The zipped workbook (.xlsx): libzip opens the container, QXmlStreamReader
// reads the workbook, its relationships, shared strings, styles and the first
// sheet.
class XlsxReader : public SpreadsheetReader
{
protected:
    bool readFirstSheet(const QString& path) override;

private:
    bool entry(const ZipContainer& archive, const QString& name, QByteArray& data,
               bool required);
    bool readWorkbook(const ZipContainer& archive, QString& sheetPath);
    void readSharedStrings(const QByteArray& xml);
    void readStyles(const QByteArray& xml);
    bool readSheet(const QByteArray& xml);
    QString cellText(const QString& type, int style, const QString& value,
                     const QString& inlineText) const;

    QStringList m_shared;
    QSet<int> m_dateStyles; // indexes of cell styles that show a date
    bool m_epoch1904 = false;
};
