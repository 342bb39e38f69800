# Load and lookup against the number of gestures, from `bench --series`: gnuplot -c speed.gp SERIES OUTPUT.svg
set terminal svg size 900,420 font "DejaVu Sans,12" background rgb "white"
set output ARG2
set multiplot layout 1,2
set logscale xy
set xlabel "gestures in the configuration"
set xtics (50, 100, 200, 500, 1000, 2000, 5000)
set xrange [40:6000]
set grid linecolor rgb "#cccccc"
set key top left
set format y "%g"

set title "One load"
set ylabel "milliseconds"
plot ARG1 using 1:($2/1e6) with linespoints lw 2 lc rgb "black" pt 7 title "file to gestures", \
     ARG1 using 1:($3/1e6) with linespoints lw 1 dt 2 lc rgb "black" pt 6 title "read, parse, toVariant"

set title "One lookup"
set ylabel "nanoseconds"
plot ARG1 using 1:4 with linespoints lw 2 lc rgb "black" pt 7 title "findGesture", \
     ARG1 using 1:5 with linespoints lw 1 dt 2 lc rgb "black" pt 6 title "plain loop over structs"
