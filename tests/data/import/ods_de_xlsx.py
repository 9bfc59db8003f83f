#!/usr/bin/env python3
"""Writes the .ods twin of each .xlsx fixture here, as LibreOffice Calc saves a
sheet: a value beside the text shown (days shown dd/mm/yy, numbers with a
decimal comma), runs of empty cells and rows written once with a count, and a
second sheet. The cells come from the spreadsheet helper's reading of the
.xlsx. Usage: ods_de_xlsx.py MORVEL_HOJA"""
import re, subprocess, sys, zipfile
from pathlib import Path
from xml.sax.saxutils import escape

here = Path(__file__).resolve().parent
NS = ('xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" '
      'xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" '
      'xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" '
      'xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" '
      'xmlns:number="urn:oasis:names:tc:opendocument:xmlns:datastyle:1.0" '
      'xmlns:calcext="urn:org:documentfoundation:names:experimental:calc:xmlns:calcext:1.0" '
      'office:version="1.3"')


def cells_of(helper, xlsx):
    out = subprocess.run([helper, str(xlsx)], capture_output=True, check=True).stdout
    cells, at = {}, out.index(b'\n') + 1
    while out[at:at + 1] == b'C':
        end = out.index(b'\n', at)
        _, r, c, n = out[at:end].split(b' ')
        text = out[end + 1:end + 1 + int(n)].decode()
        cells[(int(r), int(c))] = text
        at = end + 1 + int(n)
    return cells


def cell(text):
    if re.fullmatch(r'\d\d-\d\d-\d{4}', text):
        d, m, y = text.split('-')
        return (f'<table:table-cell table:style-name="ce1" office:value-type="date" '
                f'office:date-value="{y}-{m}-{d}" calcext:value-type="date">'
                f'<text:p>{d}/{m}/{y[2:]}</text:p></table:table-cell>')
    if re.fullmatch(r'-?\d+(\.\d+)?', text):
        shown = text.replace('.', ',')
        return (f'<table:table-cell office:value-type="float" office:value="{text}" '
                f'calcext:value-type="float"><text:p>{shown}</text:p></table:table-cell>')
    return (f'<table:table-cell office:value-type="string" calcext:value-type="string">'
            f'<text:p>{escape(text)}</text:p></table:table-cell>')


def content(cells):
    rows = max(r for r, _ in cells) + 1
    cols = max(c for _, c in cells) + 1
    body = [f'<table:table table:name="Hoja1" table:style-name="ta1">'
            f'<table:table-column table:style-name="co1" table:number-columns-repeated="1024" '
            f'table:default-cell-style-name="Default"/>']
    for r in range(rows):
        body.append('<table:table-row table:style-name="ro1">')
        body += [cell(cells[(r, c)]) if (r, c) in cells else '<table:table-cell/>'
                 for c in range(cols)]
        body.append(f'<table:table-cell table:number-columns-repeated="{1024 - cols}"/>'
                    '</table:table-row>')
    body.append(f'<table:table-row table:style-name="ro1" table:number-rows-repeated='
                f'"{1048576 - rows}"><table:table-cell table:number-columns-repeated="1024"/>'
                '</table:table-row></table:table>')
    body.append('<table:table table:name="Otra"><table:table-column/><table:table-row>'
                '<table:table-cell office:value-type="string"><text:p>no</text:p>'
                '</table:table-cell></table:table-row></table:table>')
    return (f'<?xml version="1.0" encoding="UTF-8"?>\n<office:document-content {NS}>'
            '<office:automatic-styles><number:date-style style:name="N37">'
            '<number:day number:style="long"/><number:text>/</number:text>'
            '<number:month number:style="long"/><number:text>/</number:text><number:year/>'
            '</number:date-style><style:style style:name="ce1" style:family="table-cell" '
            'style:data-style-name="N37"/></office:automatic-styles><office:body>'
            '<office:spreadsheet>' + ''.join(body) +
            '</office:spreadsheet></office:body></office:document-content>')


MANIFEST = ('<?xml version="1.0" encoding="UTF-8"?>\n<manifest:manifest xmlns:manifest='
            '"urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.3">'
            '<manifest:file-entry manifest:full-path="/" manifest:media-type='
            '"application/vnd.oasis.opendocument.spreadsheet"/><manifest:file-entry '
            'manifest:full-path="content.xml" manifest:media-type="text/xml"/>'
            '</manifest:manifest>')

for xlsx in sorted(here.glob('*.xlsx')):
    ods = xlsx.with_suffix('.ods')
    with zipfile.ZipFile(ods, 'w') as z:
        stamp = (2024, 3, 20, 10, 0, 0)
        z.writestr(zipfile.ZipInfo('mimetype', stamp),
                   'application/vnd.oasis.opendocument.spreadsheet', zipfile.ZIP_STORED)
        z.writestr(zipfile.ZipInfo('content.xml', stamp), content(cells_of(sys.argv[1], xlsx)),
                   zipfile.ZIP_DEFLATED)
        z.writestr(zipfile.ZipInfo('META-INF/manifest.xml', stamp), MANIFEST,
                   zipfile.ZIP_DEFLATED)
    print(ods.name)
