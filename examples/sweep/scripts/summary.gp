# Adiabatic temperature over equivalence ratio at the lowest pressure, marks for each enthalpy of the unburnt gas.
set terminal svg size 900,560 enhanced font "sans,14" background "white"
set output picture
set datafile separator ","
set key outside right top title "enthalpy of the\nunburnt gas, kJ/kg"
set xlabel "equivalence ratio"
set ylabel "temperature of the burnt gas, K"
set title sprintf("Complete combustion at constant enthalpy, %g bar", pressure)
set offsets graph 0.04, graph 0.04, graph 0.05, graph 0.05
set grid lc rgb "#d0d0d0"
array colours[6] = ["#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9"]
array marks[6] = [7, 5, 9, 11, 13, 15]
of(h, side) = column("enthalpy") == h && column("pressure") == pressure ? column(side) : NaN
plot for [k=1:words(enthalpies)] data using (column("phi")):(of(real(word(enthalpies, k)), "right_temperature")) \
  with points pt marks[(k - 1) % 6 + 1] ps 0.9 lc rgb colours[(k - 1) % 6 + 1] \
  title sprintf("%g", real(word(enthalpies, k)) / 1000)
