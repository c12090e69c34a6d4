# Delimited text: measure a CSV file and print slices of it as tables (a
# quoted field holding commas, doubled quotes and a line break included).
"$TOLVA_DEMO" delimited "$TOLVA_DEMO_DATA/stations.csv"
"$TOLVA_DEMO" delimited "$TOLVA_DEMO_DATA/stations.csv" 3 6 1 2
"$TOLVA_DEMO" delimited "$TOLVA_DEMO_DATA/stations.csv" 4 4 5 6
