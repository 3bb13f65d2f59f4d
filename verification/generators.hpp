#pragma once

#include <functional>
#include <vector>

#include "solve.hpp"

namespace velmor::verification {

/// Nodes on a rectangular pattern: node (i, j) with i = 0..nx along the first and j = 0..ny along the second direction,
/// j running fastest.
struct Mesh {
  int first = 1;  // number of node (0, 0)
  int nx = 0, ny = 0;
  int operator()(int i, int j) const { return first + i * (ny + 1) + j; }
  int Last() const { return (*this)(nx, ny); }
};

/// Adds a mesh of quadrilaterals of a type, or of two triangles to each for types 2 and 3; `place` gives the point of
/// (s, t), both from 0 to 1 at equal steps.
Mesh AddMesh(Model& model, int type, int nx, int ny, const std::function<Point(double s, double t)>& place,
             int material = 1);

/// The same on the rectangle from (0, 0) to (a, b) in the X-Y plane.
Mesh AddRectangle(Model& model, int type, int nx, int ny, double a, double b, int material = 1);

/// Adds nodes at equal steps from one point to another and elements of a two-node type between them; returns the number
/// of the first node.
int AddLine(Model& model, int type, int count, const Point& from, const Point& to, int material = 1);

/// The patch test of MacNeal and Harder (1985): 0.24 x 0.12 x 0.001, E = 1e6, ν = 0.25, five quadrilaterals or ten
/// triangles around four inner nodes, and the displacements of PrescribePatch on the border. Analysis code 1.
Model PatchTest(int type);

/// Gives a node the displacements u = (x + y/2)/1000, v = (y + x/2)/1000.
void PrescribePatch(Model& model, int node);

/// A strip of a cylinder about the X axis: length L along X, an angle from the top, nx by ny rectangles with their
/// corners on the cylinder.
Mesh AddCylinder(Model& model, int type, int nx, int ny, double R, double L, double angle);

/// A quarter of the roof of Scordelis and Lo, R 25, L 50, t 0.25, 80 degrees, ν = 0, by n x n rectangles; the load is
/// per area, downwards. The last node is the middle of the free edge.
Model Roof(int type, int n, double E, double load);

/// Gives each freedom of each node the same mass, as true periods need it.
void AddEqualMasses(Model& model, double mass);

/// A model that has one material as yet, number 1, and nothing else.
Model WithMaterial(int code, const Material& material);

Point operator*(double factor, const Point& p);
Point operator+(const Point& a, const Point& b);
Point Cross(const Point& a, const Point& b);
double Dot(const Point& a, const Point& b);
Point Unit(const Point& a);

}  // namespace velmor::verification
