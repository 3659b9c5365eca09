# summary.gp X Y TITLE CURVES COUNT: points of the file `data`, a block for each curve, as summary.svg.
set terminal svg size 900,560 noenhanced font "sans,14" background "white"
set output "summary.svg"
set key outside right top title ARG4
set xlabel ARG1
set ylabel ARG2
set title ARG3
set offsets graph 0.04, graph 0.04, graph 0.05, graph 0.05
set grid lc rgb "#d0d0d0"
array colours[6] = ["#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9"]
array marks[6] = [7, 5, 9, 11, 13, 15]
plot for [k = 0 : ARG5 - 1] "data" index k using 1:2 \
  with points pt marks[k % 6 + 1] ps 0.9 lc rgb colours[k % 6 + 1] title columnheader(1)
