// morvel-hoja: reads the first sheet of a workbook (.xls, .xlsx or .ods) for the
// import of detail lines, in a process of its own. The program runs it with
// bounds on its memory, time and output, so that a damaged or hostile file
// can at worst end this process, never the program.
//
// Usage: morvel-hoja FILE
//
// It writes to its standard output, as bytes:
//   "MORVEL-HOJA 1\n"
//   for each cell that holds a value: "C {row} {column} {length}\n" and the
//   cell's text in UTF-8, {length} bytes (rows and columns from 0, in order);
//   at the end "F\n" and exit status 0;
// or, when the file is not a workbook it can read, "E {length}\n" and the
// reason in Spanish, and exit status 2.
#include <cstdio>
#include <sys/resource.h>

#include <QByteArray>
#include <QFile>

#include "SpreadsheetReader.h"

namespace {

// The same bounds the program sets, should the helper be run by hand.
void limitItself()
{
    const rlimit memory{512ull << 20, 512ull << 20};
    setrlimit(RLIMIT_AS, &memory);
    const rlimit cpu{30, 30};
    setrlimit(RLIMIT_CPU, &cpu);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

void put(const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}

void putText(const char* head, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    put(head + QByteArray::number(utf8.size()) + '\n');
    put(utf8);
}

} // namespace

int main(int argc, char** argv)
{
    limitItself();
    if (argc != 2) {
        std::fputs("Uso: morvel-hoja ARCHIVO\n", stderr);
        return 64;
    }
    const QString path = QFile::decodeName(argv[1]);
    put("MORVEL-HOJA 1\n");
    const auto reader = SpreadsheetReader::ForFile(path);
    if (!reader || !reader->read(path)) {
        putText("E ", reader ? reader->errorText()
                             : QStringLiteral("El archivo no es una hoja de cálculo."));
        return 2;
    }
    for (const auto& [place, text] : reader->cells())
        putText("C " + QByteArray::number(place.first) + ' ' + QByteArray::number(place.second) +
                    ' ',
                text);
    put("F\n");
    return std::fflush(stdout) == 0 ? 0 : 1;
}
