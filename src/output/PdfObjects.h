#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>

// The objects of a PDF file as Qt's writer lays it out: each "n 0 obj" at the
// offset its cross-reference table gives, running up to the next object or
// the table.
class PdfObjects
{
public:
    explicit PdfObjects(const QByteArray& pdf);

    bool valid() const { return m_valid; }
    // What follows "n 0 obj\n", its "endobj" included; empty when there is no
    // such object.
    QByteArray body(int n) const;
    // The numbers of every object, in the file's order.
    QList<int> numbers() const { return m_order; }
    // What comes before the first object: the version and the binary mark.
    QByteArray header() const { return m_pdf.left(m_first); }

    int info = 0;
    int pages = 0;
    QList<int> kids;

private:
    bool read();
    bool readTable(qsizetype xref);

    QByteArray m_pdf;
    QHash<int, QPair<qsizetype, qsizetype>> m_spans;
    QList<int> m_order;
    qsizetype m_first = 0;
    bool m_valid = false;
};

// The objects a dictionary names, "n 0 R", in their order.
QList<int> PdfReferences(const QByteArray& dictionary);
// An object's dictionary, up to its stream's data when it has one.
QByteArray PdfDictionary(const QByteArray& body);
// The dictionary with its references turned to the new numbers.
QByteArray PdfRenumber(const QByteArray& dictionary, const QHash<int, int>& number);
// The object `n` and every object it leads to, in the order they are met.
QList<int> PdfObjectsReached(const PdfObjects& all, int n);
// A text string as Qt's writer spells it: UTF-16 with its byte order mark.
QByteArray PdfText(const QString& text);

// A file being written: its objects one after the other, and at the end the
// table of where each begins, the information at 1 and the catalog at 2.
class PdfOut
{
public:
    explicit PdfOut(const QByteArray& header) : m_out(header) {}
    // "n 0 obj\n" and `body`, which ends with "endobj\n".
    void add(int n, const QByteArray& body);
    QByteArray finish();

private:
    QByteArray m_out;
    QList<qsizetype> m_offsets;
};
