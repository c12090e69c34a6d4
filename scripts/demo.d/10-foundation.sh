# Foundation: properties, paths, texts, timing, system names.
"$TOLVA_DEMO" foundation
