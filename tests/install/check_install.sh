#!/usr/bin/env bash
# Installs the build tree given as $1 into a temporary prefix and checks it:
# the program, its manual with every page and picture the pages link to, the
# desktop entry with its exact name, the icon; then starts the installed
# program from / with a data folder of its own and sees it make its database.
set -uo pipefail
build="$1"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
passed=0
failed=0

check() { # check "what" command...
    local what="$1"
    shift
    if "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FALLA: $what"
    fi
}

if ! cmake --install "$build" --prefix "$prefix" --strip >"$work/install.log" 2>&1; then
    cat "$work/install.log"
    echo "0 passed, 1 failed"
    exit 1
fi

check "bin/morvel ejecutable" test -x "$prefix/bin/morvel"
check "bin/morvel-hoja ejecutable" test -x "$prefix/bin/morvel-hoja"
check "bin/morvel-lote ejecutable" test -x "$prefix/bin/morvel-lote"
check "bin/morvel sin símbolos de depuración" bash -c "! readelf -S \"$prefix/bin/morvel\" | grep -q debug_info"
for f in share/morvel/help/index.html share/morvel/help/estilo.css \
    share/morvel/icons/morvel.svg share/applications/morvel.desktop \
    share/icons/hicolor/scalable/apps/morvel.svg; do
    check "$f instalado" test -s "$prefix/$f"
done

desktop="$prefix/share/applications/morvel.desktop"
for line in '[Desktop Entry]' 'Type=Application' \
    'Name=Morvel — Declaraciones Juradas T.I.S.S.H.' 'Exec=morvel' 'Icon=morvel' \
    'Terminal=false' 'Categories=Office;Finance;'; do
    check "morvel.desktop: $line" grep -qxF "$line" "$desktop"
done

# Every page, picture and style sheet that a page of the manual names is
# installed beside it; nothing is fetched from elsewhere, nothing is scripted.
help="$prefix/share/morvel/help"
pages=("$help"/*.html)
check "el manual tiene páginas" test "${#pages[@]}" -gt 1
outside='(src|href)="(https?:)?//|<script'
for page in "${pages[@]}"; do
    name="$(basename "$page")"
    targets=$(grep -oE '(href|src)="[^"#]+' "$page" | sed -E 's/^(href|src)="//' | sort -u)
    for target in $targets; do
        check "$name enlaza $target" test -f "$help/$target"
    done
    check "$name sin recursos externos" bash -c "! grep -qiE '$outside' '$page'"
done
# ... and every picture drawn of the windows is shown by some page.
pictures=("$help"/img/*.png)
check "imágenes de las ventanas" test "${#pictures[@]}" -ge 30
for picture in "${pictures[@]}"; do
    name="img/$(basename "$picture")"
    check "alguna página muestra $name" grep -qF "src=\"$name\"" "${pages[@]}"
done

# The installed program starts from any folder: it finds its assets by its
# own place and makes its database in the data folder it is given.
mkdir -p "$work/home"
(cd / && HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_CONFIG_HOME="$work/config" \
    XDG_RUNTIME_DIR="$work" QT_QPA_PLATFORM=offscreen \
    timeout 4 "$prefix/bin/morvel" >"$work/run.log" 2>&1)
rc=$?
check "el programa instalado sigue abierto hasta el final de la prueba (rc $rc)" test "$rc" -eq 124
check "el programa instalado crea su base de datos" test -e "$work/data/Morvel/Morvel.db"
if [ "$failed" -ne 0 ]; then
    cat "$work/run.log"
fi

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
