#pragma once

#include <QString>

struct FormTables;

// The copy of one form's original first version from a model month into a new
// month of the same premises: the header with its amounts as they stand, its
// lines, and its registration row. The copies are plain originals.
class PeriodCopy
{
public:
    PeriodCopy(const QString& padron, const QString& objeto, const QString& modelPeriod,
               const QString& mm, const QString& yyyy);

    // False when a statement failed; what was written before stays.
    bool Copy(const FormTables& form) const;

private:
    // Whether the month already has this form's original, looked at under
    // the month's reservation.
    bool alreadyCopied(const FormTables& form, const QString& newPeriod) const;
    bool copyLines(const FormTables& form, const QString& oldCodigo,
                   const QString& newCodigo) const;
    QString originalFilter() const;

    QString m_padron;
    QString m_objeto;
    QString m_modelPeriod; // mm-yyyy
    QString m_mm;
    QString m_yyyy;
};
