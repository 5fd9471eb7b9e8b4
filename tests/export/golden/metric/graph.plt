set terminal png size 1280,1024
set key right top inside
set xlabel "Distance from Transmitter (km)" font "Tahoma, 11"
set ylabel "Field Strength (dBu)" font "Tahoma, 11"
set title  "Ridge to valley" font "Tahoma, 18"
set label "Freq: 950.0 MHz" font "Tahoma, 10" at 5.0,100.4
set label "ERP: 2.5 kW" font "Tahoma, 10" at 5.0,103.9
set label "Tx Ant: 633 m AMSL" font "Tahoma, 10" at 5.0,107.4
set label "Rx Ant: 12.0 m AGL" font "Tahoma, 10" at 5.0,110.9
set label "LR Clutter: 6 dB" font "Tahoma, 10" at 5.0,114.4
set label "Latitude: 36.4" font "Tahoma, 10" at 8.75,100.4
set label "Longitude: -84.35" font "Tahoma, 10" at 8.75,103.9
set label "Tx HAAT: 30 m AMSL" font "Tahoma, 10" at 8.75,107.4
set label "PTP Clutter: 5 dB" font "Tahoma, 10" at 8.75,114.4
set output  "metric/graph.png"
set grid
plot  "metric/graph.dat" using 2:3 title "Longley-Rice" with lines lw 3,\
"metric/graph.dat" using 2:4 title "Point-to-Point" with lines lw 3,\
"metric/graph.dat" using 2:6 title "Freespace" with lines lw 2,\
"metric/graph.dat" using 2:5 title "Std Contour" with lines lw 2,\
"metric/graph.dat" using 2:7 notitle with lines lw 1
