#pragma once

#include <QString>
#include <QVector>

struct ReportJob;

// The verification code of a printed page: a QR code holding the identity of
// the declaration, so that a scanner matches the paper with its submission
// file.
class ReportQrCode
{
public:
    // "Formulario=F976;CUIT=20-12345678-6;Padron=...;Objeto=...;Periodo=01-2010;
    // Rectificacion=0;Guidv=0A1B2C3D4E5F;Total=1.122,07;", in the manner of the
    // parameter strings.
    static QString Text(const ReportJob& job);

    // The dark modules of the code of `text`, row by row; empty when it
    // cannot be encoded.
    static QVector<QVector<bool>> Modules(const QString& text);
};
