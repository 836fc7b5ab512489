#!/usr/bin/env python3
"""Writes the SVG source of every picture that the media list asks for.

The list (../media.tsv) names the folder and file; the table below says which
drawing makes it and at what size. A file in the list without a drawing here
is reported and makes the script fail, so nothing is forgotten.
"""

import csv
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)

import frescoes  # noqa: E402
import maps  # noqa: E402
import objects  # noqa: E402
import plans  # noqa: E402
import scenes  # noqa: E402

ART = {
    # sources: photographs of objects and sites; no taller than 380 pixels, so that the
    # viewer with its caption and legend fits inside the 800 x 600 main window
    "figurine_folded_arms.jpg": (objects.figurine, 280, 380),
    "harp_player_keros.jpg": (objects.harp_player, 340, 380),
    "frying_pan_syros.jpg": (objects.frying_pan, 460, 360),
    "obsidian_blades.jpg": (objects.obsidian_blades, 520, 360),
    "knossos_throne_room.jpg": (scenes.throne_room, 520, 370),
    "phaistos_disc.jpg": (objects.phaistos_disc, 380, 380),
    "linear_b_tablet.jpg": (objects.linear_b, 560, 290),
    "fresco_fisherman.jpg": (frescoes.fisherman, 260, 380),
    "fresco_boxers.jpg": (frescoes.boxing_boys, 350, 380),
    "fresco_spring.jpg": (frescoes.swallows_lilies, 500, 370),
    "fresco_antelopes.jpg": (frescoes.antelopes, 500, 360),
    "fresco_blue_monkeys.jpg": (frescoes.blue_monkeys, 500, 360),
    "delos_lions.jpg": (scenes.delos_lions, 540, 360),
    "portara_naxos.jpg": (scenes.portara, 500, 370),
    "figurine_head_amorgos.jpg": (objects.figurine_head, 300, 380),
    "kastri_syros.jpg": (scenes.kastri, 520, 370),
    "fresco_flotilla.jpg": (frescoes.ship_fresco, 600, 280),
    "fresco_saffron.jpg": (frescoes.saffron_gatherers, 460, 380),
    "akrotiri_street.jpg": (scenes.akrotiri_street, 380, 380),
    "knossos_pithoi.jpg": (scenes.pithoi_magazine, 500, 370),
    "delos_sanctuary.jpg": (scenes.delos_sanctuary, 540, 360),
    "paros_quarries.jpg": (scenes.paros_quarry, 500, 370),
    "parian_chronicle.jpg": (objects.parian_chronicle, 300, 380),
    # maps and plans
    "map_cyclades.png": (maps.cyclades, 800, 780),
    "map_aegean_bronze_age.png": (maps.aegean_bronze_age, 860, 660),
    "map_obsidian_routes.png": (maps.obsidian_routes, 820, 640),
    "map_crete_palaces.png": (maps.crete_palaces, 860, 480),
    "map_knossos_plan.png": (plans.knossos_plan, 800, 620),
    "map_thera_caldera.png": (maps.thera_caldera, 820, 640),
    "map_akrotiri_plan.png": (plans.akrotiri_plan, 760, 640),
    "map_delian_league.png": (maps.delian_league, 860, 660),
    "map_delos_sanctuary.png": (plans.delos_plan, 800, 600),
    "map_eruption_ash.png": (maps.eruption_ash, 880, 600),
    # pictures of comments, small
    "comment_emery.jpg": (objects.emery, 220, 160),
    "comment_paint_traces.jpg": (objects.paint_traces, 180, 220),
    "comment_cist_grave.jpg": (scenes.cist_grave, 240, 170),
    "comment_obsidian_core.jpg": (objects.obsidian_core, 170, 200),
    "comment_longboat.jpg": (objects.longboat, 260, 120),
    "comment_double_axe.jpg": (objects.double_axe, 160, 200),
    "comment_linear_b_ideograms.jpg": (objects.ideograms, 260, 180),
    "comment_bed_cast.jpg": (objects.bed_cast, 240, 160),
    "comment_pumice.jpg": (objects.pumice, 220, 170),
    "comment_tribute_list.jpg": (objects.tribute_list, 160, 240),
    "comment_melos_coin.jpg": (objects.melos_coin, 180, 180),
    "comment_lychnites.jpg": (objects.lychnites, 180, 220),
    # pictures of index terms
    "term_evans.jpg": (scenes.evans, 300, 380),
    "term_apollo.jpg": (objects.apollo_sepia, 260, 380),
    "term_naxos.jpg": (scenes.naxos_town, 380, 260),
    "term_paros.jpg": (scenes.parikia, 380, 260),
    "term_milos.jpg": (scenes.milos_coast, 380, 260),
    "term_keros.jpg": (scenes.keros, 380, 240),
    "term_akrotiri.jpg": (scenes.akrotiri_roof, 380, 260),
    "term_knossos.jpg": (scenes.north_entrance, 360, 280),
    "term_phaistos.jpg": (scenes.phaistos, 380, 260),
    "term_delos.jpg": (scenes.delos_from_sea, 380, 240),
    "term_phylakopi.jpg": (scenes.phylakopi, 380, 260),
    "term_obsidian.jpg": (objects.obsidian_lump, 300, 240),
    "term_figurine.jpg": (objects.three_figurines, 380, 300),
    "term_fresco.jpg": (frescoes.painter_at_work, 340, 300),
    "term_pithos.jpg": (scenes.pithos_child, 300, 360),
    "term_caldera.jpg": (scenes.caldera_cliffs, 380, 260),
    "term_trireme.jpg": (scenes.trireme, 400, 240),
    "term_linear_a.jpg": (objects.linear_a, 320, 240),
    "term_bull_leaping.jpg": (frescoes.bull_leaping, 400, 260),
    "term_quarry.jpg": (scenes.open_quarry, 360, 280),
}

PICTURE_FOLDERS = {"Pictures", "photos", "Photos"}


def manifest(path):
    with open(path, encoding="utf-8", newline="") as f:
        rows = list(csv.reader(f, delimiter="\t", quoting=csv.QUOTE_NONE))
    return [r for r in rows[1:] if r and r[0] in PICTURE_FOLDERS]


def main():
    out_root = os.path.join(HERE, "svg")
    rows = manifest(os.path.join(os.path.dirname(HERE), "media.tsv"))
    missing = []
    only = set(sys.argv[1:])
    for row in rows:
        folder, name = row[0], row[1]
        if only and name not in only:
            continue
        if name not in ART:
            missing.append(f"{folder}/{name}")
            continue
        draw, w, h = ART[name]
        stem = os.path.splitext(name)[0]
        draw(w, h).save(os.path.join(out_root, folder, stem + ".svg"))
    for m in missing:
        print(f"no drawing for {m}", file=sys.stderr)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
