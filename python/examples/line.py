"""Meshes a line with a corner by sizes and draws it."""

from vornik1d import mesh_line, plot

corners = [[0, 0], [10, 0], [10, 6]]
mesh = mesh_line(corners, sizes=[1, 0.2, 1], deviation_tolerance=0.01)
print(mesh)

axes = plot.lines(mesh)
plot.targets(mesh, ax=axes)
axes.figure.savefig("line.png")
