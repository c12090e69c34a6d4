# Local files: directories, whole text files, file tests, profile values, temporary files.
"$TOLVA_DEMO" files "$TOLVA_DEMO_DATA/files" "$TOLVA_DEMO_WORK/files"
