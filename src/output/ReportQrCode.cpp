#include "ReportQrCode.h"

#include <qrencode.h>

#include "ReportJob.h"
#include "Util.h"

QString ReportQrCode::Text(const ReportJob& job)
{
    const char* const keys[][2] = {{"Formulario", "FORMULARIO"}, {"CUIT", "CUIT"},
                                   {"Padron", "PADRON"},         {"Objeto", "OBJETO"},
                                   {"Periodo", "PERIODO"},       {"Rectificacion", "RECTIFICACION"},
                                   {"Guidv", "GUIDV"},           {"Total", "TOTAL"}};
    QString text;
    for (const auto& key : keys) {
        QString value = job.field(QString::fromLatin1(key[1]));
        if (qstrcmp(key[0], "CUIT") == 0 && value.size() == 11)
            value = FormatCuit(value);
        text += QString::fromLatin1(key[0]) + u'=' + value + u';';
    }
    return text;
}

QVector<QVector<bool>> ReportQrCode::Modules(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    QRcode* code = QRcode_encodeString8bit(bytes.constData(), 0, QR_ECLEVEL_M);
    if (!code)
        return {};
    QVector<QVector<bool>> modules(code->width, QVector<bool>(code->width));
    for (int y = 0; y < code->width; ++y)
        for (int x = 0; x < code->width; ++x)
            modules[y][x] = code->data[y * code->width + x] & 1;
    QRcode_free(code);
    return modules;
}
