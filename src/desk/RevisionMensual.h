#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// One finding of the month's check, naming the declaration (or the form to
// start) it is about by the key of the taxpayer's tree.
struct Observacion {
    int idContribuyente = 0;
    QString contribuyente;
    QString cuit;
    QString padron;
    QString objeto;
    QString formulario;
    QString texto;
    QString clave;
};

// The check of a month before filing, for one taxpayer or all: forms offered
// with no declaration, returns whose annexes disagree with them, declarations
// whose submission file cannot be written whole, and amounts the file cannot
// carry.
class RevisionMensual
{
public:
    // `periodo` is mm-yyyy; no ids means every taxpayer.
    static QVector<Observacion> Revisar(const QString& periodo, const QVector<int>& ids = {});

    // Why the submission file of the declaration named by a tree key cannot be
    // written whole; empty when it can.
    static QStringList ProblemasDeArchivo(const QString& clave);
    // The amounts of the declaration that are no numbers, and the texts that
    // hold the field separator "@": the file is written, but cannot carry them.
    static QStringList DatosQueNoLleva(const QString& clave);
    // The disagreements between a return (F976, F2001) and its annexes F977
    // and F978, compared as the form compares them when it is accepted.
    static QStringList DiferenciasConAnexos(const QString& clave);
};
