#!/usr/bin/env python3
"""Writes one plan in three forms: Tessaly's drawing file (plan.pdr), DXF
(plan.dxf, for LibreCAD) and SVG (plan.svg, for Inkscape), with the same
shapes in each: lines, rectangles, text and hatched rectangles.

  make_plan.py --shapes N [--page WxH] OUTDIR   a plan of N shapes, for the benchmarks
  make_plan.py --sample [--portrait] OUTDIR     a small house plan, for the pictures in docs/

Page sizes are in millimetres; the plan of N shapes fills an A1 sheet
(841 by 594 mm) unless --page says otherwise. The .pdr follows
docs/pdr-format.md."""
import argparse
import os
import struct
import zlib

# --- the plan as a list of shapes ------------------------------------------------

LINE, RECT, TEXT, HATCH = 'line', 'rect', 'text', 'hatch'
WORDS = ['Kitchen', 'Lounge', 'Bedroom', 'Bath', 'Hall', 'Store', 'Study', 'Garage', 'Utility', 'Porch']


def benchmark_plan(count, width, height):
    """`count` shapes laid on a grid of cells over the page, a tenth of them
    hatched rectangles, a fifth text, the rest lines and open rectangles."""
    shapes = []
    margin = 10.0
    cols = max(1, int((count / ((height - 2 * margin) / (width - 2 * margin))) ** 0.5))
    rows = max(1, -(-count // cols))
    cw = (width - 2 * margin) / cols
    ch = (height - 2 * margin) / rows
    for i in range(count):
        x = margin + (i % cols) * cw
        y = margin + (i // cols) * ch
        kind = i % 10
        if kind <= 3:
            shapes.append((LINE, x, y, x + cw * 0.9, y + ch * (0.2 + 0.2 * (kind % 3))))
        elif kind <= 6:
            shapes.append((RECT, x, y, x + cw * 0.8, y + ch * 0.8))
        elif kind <= 8:
            shapes.append((TEXT, x, y, x + cw, y + ch, WORDS[i % len(WORDS)], max(1, round(ch * 0.6 * 72 / 25.4))))
        else:
            shapes.append((HATCH, x, y, x + cw * 0.8, y + ch * 0.8, 2 + i % 4))
    return shapes


def sample_plan(portrait):
    """A small house: brick outer walls, inner walls, rooms named, a title block."""
    w, h = (210, 295) if portrait else (295, 210)
    s = []
    # border and title block
    s.append((RECT, 8, 8, w - 8, h - 8))
    s.append((RECT, w - 98, h - 38, w - 8, h - 8))
    s.append((TEXT, w - 96, h - 36, w - 10, h - 28, 'Sample Plan - Ground Floor', 12))
    s.append((TEXT, w - 96, h - 27, w - 10, h - 20, 'Scale 1:50   Tessaly', 9))
    s.append((TEXT, w - 96, h - 19, w - 10, h - 12, '12 Orchard Lane', 9))
    ox, oy = 25, 25
    bw, bh = (150, 200) if portrait else (220, 130)
    t = 4  # wall thickness in page mm
    # outer walls, hatched as brick
    s.append((HATCH, ox, oy, ox + bw, oy + t, 6))
    s.append((HATCH, ox, oy + bh - t, ox + bw, oy + bh, 6))
    s.append((HATCH, ox, oy + t, ox + t, oy + bh - t, 6))
    s.append((HATCH, ox + bw - t, oy + t, ox + bw, oy + bh - t, 6))
    # inner walls
    midx = ox + bw * 0.55
    midy = oy + bh * 0.5
    s.append((HATCH, midx - 1, oy + t, midx + 1, oy + bh - t, 5))
    s.append((HATCH, ox + t, midy - 1, midx - 1, midy + 1, 5))
    # doors: openings shown as lines with a swing
    s.append((LINE, midx + 1, midy + 10, midx + 16, midy + 10))
    s.append((LINE, midx + 1, midy + 25, midx + 16, midy + 10))
    # furniture: a table and a bath
    s.append((RECT, ox + 20, oy + 20, ox + 50, oy + 35))
    s.append((RECT, midx + 20, oy + bh - t - 25, midx + 50, oy + bh - t - 8))
    # room names
    s.append((TEXT, ox + 10, midy - 20, midx - 10, midy - 10, 'Kitchen', 12))
    s.append((TEXT, ox + 10, oy + bh - 30, midx - 10, oy + bh - 20, 'Lounge', 12))
    s.append((TEXT, midx + 10, midy - 20, ox + bw - 10, midy - 10, 'Bedroom', 12))
    s.append((TEXT, midx + 10, oy + bh - 45, ox + bw - 10, oy + bh - 35, 'Bath', 12))
    # a dimension line along the top
    s.append((LINE, ox, oy - 8, ox + bw, oy - 8))
    s.append((LINE, ox, oy - 11, ox, oy - 5))
    s.append((LINE, ox + bw, oy - 11, ox + bw, oy - 5))
    s.append((TEXT, ox + bw / 2 - 20, oy - 16, ox + bw / 2 + 20, oy - 9, '%d mm' % (bw * 50), 9))
    return s, w, h


# --- Tessaly's drawing file ----------------------------------------------------------

def pdr_string(text):
    data = text.encode('utf-8')
    return struct.pack('<I', len(data)) + data


def pdr_style(fill_type=0, fill=0xFFFFFF, back=0xFFFFFF, hatch=0, weight=0, font=('Arial', 10)):
    return (struct.pack('<BIIBBiBIiBBiBIii', fill_type, fill, back, 0, hatch, -1, 0, 0x000000, weight, 0, 0, 3,
                        0, 0x808080, 2, 2) + pdr_string(font[0]) +
            struct.pack('<iBBBiiII', font[1], 0, 0, 0, 9, 0, 0, 0))


def chunk(tag, body):
    return tag.encode('ascii') + struct.pack('<Q', len(body)) + body


def write_pdr(path, shapes, width, height):
    styles = [pdr_style()]  # 0: lines and open rectangles
    style_of = {}

    def style_index(key, make):
        if key not in style_of:
            style_of[key] = len(styles)
            styles.append(make())
        return style_of[key]

    records = []
    for n, s in enumerate(shapes, start=1):
        kind = s[0]
        left, top, right, bottom = s[1:5]
        parts = 0
        extra = b''
        if kind == LINE:
            code, flags, style = 20, 2, 0
        elif kind == RECT:
            code, flags, style = 1, 2, 0
        elif kind == HATCH:
            code, flags = 1, 3
            style = style_index(('h', s[5]), lambda: pdr_style(2, 0x000000, 0xFFFFFF, s[5]))
        else:
            code, flags = 136, 0
            style = style_index(('t', s[6]), lambda: pdr_style(font=('Arial', s[6])))
            parts = 1
            extra = pdr_string(s[5])
        records.append(struct.pack('<ihhHIdddd', n, code, 0, flags, style, left, top, right, bottom) +
                       pdr_string('Shape%d' % n) + struct.pack('<B', parts) + extra)
    page = struct.pack('<iiBIIIBBBIIii', int(width), int(height), 1 if width > height else 0, 0xFFFFFF, 0,
                       0x808080, 1, 1, 1, 0xC0C0C0, 0xFF0000, 5, 5)
    body = (b'TESSPDR\x1a' + struct.pack('<HHI', 1, 0, 0) + chunk('PAGE', page) + chunk('DTAG', pdr_string('50')) +
            chunk('GUID', struct.pack('<II', 0, 0)) + chunk('BLOB', struct.pack('<I', 0)) +
            chunk('STYL', struct.pack('<I', len(styles)) + b''.join(styles)) +
            chunk('SHAP', struct.pack('<I', len(records)) + b''.join(records)) + chunk('END ', b''))
    with open(path, 'wb') as f:
        f.write(body + struct.pack('<I', zlib.crc32(body) & 0xFFFFFFFF))


# --- DXF (millimetres, y upwards) ---------------------------------------------------------

def write_dxf(path, shapes, width, height):
    out = ['0', 'SECTION', '2', 'HEADER', '9', '$ACADVER', '1', 'AC1015', '9', '$INSUNITS', '70', '4',
           '9', '$EXTMIN', '10', '0', '20', '0', '9', '$EXTMAX', '10', str(width), '20', str(height),
           '0', 'ENDSEC', '0', 'SECTION', '2', 'ENTITIES']

    def y(v):
        return '%.3f' % (height - v)

    for s in shapes:
        kind = s[0]
        l, t, r, b = s[1:5]
        if kind == LINE:
            out += ['0', 'LINE', '8', '0', '10', '%.3f' % l, '20', y(t), '11', '%.3f' % r, '21', y(b)]
        elif kind in (RECT, HATCH):
            out += ['0', 'LWPOLYLINE', '8', '0', '90', '4', '70', '1']
            for px, py in ((l, t), (r, t), (r, b), (l, b)):
                out += ['10', '%.3f' % px, '20', y(py)]
            if kind == HATCH:
                out += ['0', 'HATCH', '8', '0', '10', '0', '20', '0', '30', '0', '210', '0', '220', '0', '230', '1',
                        '2', 'ANSI31', '70', '0', '71', '0', '91', '1', '92', '2', '72', '0', '73', '1', '93', '4']
                for px, py in ((l, t), (r, t), (r, b), (l, b)):
                    out += ['10', '%.3f' % px, '20', y(py)]
                out += ['97', '0', '75', '0', '76', '1', '52', '0', '41', '1', '77', '0', '78', '1',
                        '53', '45', '43', '0', '44', '0', '45', '-0.707', '46', '0.707', '79', '0', '98', '0']
        else:
            size = s[6] * 25.4 / 72 * 0.7
            out += ['0', 'TEXT', '8', '0', '10', '%.3f' % l, '20', y(b), '40', '%.3f' % size, '1', s[5]]
    out += ['0', 'ENDSEC', '0', 'EOF']
    with open(path, 'w') as f:
        f.write('\n'.join(out) + '\n')


# --- SVG (millimetres) --------------------------------------------------------------------------

def write_svg(path, shapes, width, height):
    out = ['<?xml version="1.0" encoding="UTF-8"?>',
           '<svg xmlns="http://www.w3.org/2000/svg" width="%gmm" height="%gmm" viewBox="0 0 %g %g">' %
           (width, height, width, height),
           '<defs><pattern id="hatch" patternUnits="userSpaceOnUse" width="2" height="2">'
           '<path d="M0,2 L2,0" stroke="black" stroke-width="0.15"/></pattern></defs>',
           '<rect width="%g" height="%g" fill="white"/>' % (width, height),
           '<g fill="none" stroke="black" stroke-width="0.25" font-family="Arial">']
    for s in shapes:
        kind = s[0]
        l, t, r, b = s[1:5]
        if kind == LINE:
            out.append('<line x1="%.3f" y1="%.3f" x2="%.3f" y2="%.3f"/>' % (l, t, r, b))
        elif kind == RECT:
            out.append('<rect x="%.3f" y="%.3f" width="%.3f" height="%.3f"/>' % (l, t, r - l, b - t))
        elif kind == HATCH:
            out.append('<rect x="%.3f" y="%.3f" width="%.3f" height="%.3f" fill="url(#hatch)"/>' %
                       (l, t, r - l, b - t))
        else:
            out.append('<text x="%.3f" y="%.3f" font-size="%.3f" fill="black" stroke="none">%s</text>' %
                       (l, b, s[6] * 25.4 / 72, s[5]))
    out.append('</g></svg>')
    with open(path, 'w') as f:
        f.write('\n'.join(out) + '\n')


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('outdir')
    parser.add_argument('--shapes', type=int, default=0)
    parser.add_argument('--page', default='841x594')
    parser.add_argument('--sample', action='store_true')
    parser.add_argument('--portrait', action='store_true')
    args = parser.parse_args()
    os.makedirs(args.outdir, exist_ok=True)
    if args.sample:
        shapes, width, height = sample_plan(args.portrait)
    else:
        if args.shapes <= 0:
            parser.error('give --shapes N or --sample')
        width, height = (float(v) for v in args.page.split('x'))
        shapes = benchmark_plan(args.shapes, width, height)
    write_pdr(os.path.join(args.outdir, 'plan.pdr'), shapes, width, height)
    write_dxf(os.path.join(args.outdir, 'plan.dxf'), shapes, width, height)
    write_svg(os.path.join(args.outdir, 'plan.svg'), shapes, width, height)


if __name__ == '__main__':
    main()
