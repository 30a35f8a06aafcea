#!/bin/sh
# Renders the built-in icons in Resource/CommonResources from their sources in Resource/svg and lists them in
# Resource/YxHelp.qrc. The results are committed, so a build doesn't need this script. Needs rsvg-convert
# (Debian: librsvg2-bin).
#
# Each picture has four times the pixels of its design grid and is drawn on whole pixels of that grid. The
# window asks for it at the size of the grid times the scale of the screen; the toolkit scales pictures down, by
# averages, but never up. So edges stay sharp at 1x, 2x and 4x from one file, and no @2x files are needed: the
# suffix in two of the names is only part of the name. Style sheets that show a picture must give its size,
# else they take that of the file.
set -eu
export LC_ALL=C # one order of the files everywhere

cd "$(dirname "$0")/../Resource"

ink='#46536b'    # title bar
soft='#69758a'   # search line and lists
edge='#98a3b3'   # indicators
accent='#1e75f8' # the window's own blue
white='#ffffff'
mist='#ffffff61' # on the banner, not available
sky='#a9d2ff'    # on the banner, pressed

render() # name, source, pixels, colour, colour of the pad behind
{
    css=$(mktemp)
    printf 'svg { color: %s } .pad { fill: %s }\n' "$4" "${5:-none}" >"$css"
    rsvg-convert --width="$3" --height="$3" --stylesheet="$css" --output="CommonResources/$1.png" "svg/$2.svg"
    rm -f "$css"
}

banner() # prefix of the name, source, then the names of the states normal, hover, pressed
{
    render "$1$3" "$2" 140 "$white"
    render "$1$4" "$2" 140 "$white" '#ffffff2e'
    render "$1$5" "$2" 140 "$sky" '#0000003d'
}

render back arrow-left 60 "$ink"
render next arrow-right 60 "$ink"
render icon_flash_nor reload 60 "$ink"
render icon_online globe 60 "$ink"
render icon_setting_nor gear 60 "$ink"
render icon_min_nor minimize 60 "$ink"
render icon_max_nor maximize 60 "$ink"
render icon_restore_nor restore 60 "$ink"
render icon_close_nor@3x close 60 "$ink"

render icon_search@2x search 48 "$soft"
render icon_filter_nor filter 48 "$soft"
render icon_filter_press filter 48 "$accent"

banner icon_home tool-home _normal _hover _clicked
banner icon_collect tool-star _normal _hover _clicked_
banner icon_print tool-print _normal _hover _clicked
banner icon_back tool-back _normal __hover _clicked
banner icon_progres tool-forward _normal _hover _clicked
render icon_back_disable tool-back 140 "$mist"
render icon_progress_disable tool-forward 140 "$mist"

render icon_expand chevron-down 40 "$soft"
render icon_fold chevron-right 40 "$soft"
render icon_favorite star 64 '#f2a81d'

render icon_check_normal check-off 68 "$edge"
render icon_check_hover check-off 68 "$accent"
render icon_check_clicked check-on 68 "$accent"
render icon_radio_normal radio-off 68 "$edge"
render icon_radio_hover radio-off 68 "$accent"
render icon_radio_clicked radio-on 68 "$accent"

render YxPrdIcon product 256 "$white"

{
    printf '<RCC>\n  <qresource prefix="/Resource">\n'
    for file in CommonResources/*.png; do
        printf '    <file>%s</file>\n' "$file"
    done
    printf '  </qresource>\n</RCC>\n'
} >YxHelp.qrc
