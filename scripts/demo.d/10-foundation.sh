# Foundation: properties, texts, clock texts, timing, system names, error
# texts and a console message box (stdin is not a terminal here, so the
# query answers its default button without waiting).
"$TOLVA_DEMO" foundation </dev/null
