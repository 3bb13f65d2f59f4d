#include "elements/materials.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"

namespace velmor {
namespace {

int ReadMaterialCount(ItemReader& file, std::source_location where) {
  try {
    return file.Whole("number of materials", where);
  } catch (const Failure& failure) {
    throw Failure(Cause::NoMaterials, failure.number, failure.what(), file.Path(), where);
  }
}

Material ReadMaterial(ItemReader& file) {
  file.Skip(1, "name of a material");
  Material m;
  for (double* field :
       {&m.E, &m.nu, &m.density, &m.A, &m.planeStrain, &m.rotation, &m.J, &m.unused, &m.Iy, &m.Wy, &m.Iz, &m.Wz}) {
    *field = file.Number("field of a material");
  }
  return m;
}

SpringMatrix ReadSpring(ItemReader& file) {
  SpringMatrix spring;
  for (int i = 1; i <= 6; ++i) {
    for (int j = 1; j <= 6; ++j) spring(i, j) = file.Single("term of a spring matrix");
  }
  return spring;
}

}  // namespace

double ShearModulus(const Material& m, std::source_location where) { return Divide(m.E / 2, 1 + m.nu, where); }

double PlaneStressFactor(const Material& m, std::source_location where) {
  return Divide(m.E * m.A, 1 - m.nu * m.nu, where);
}

double PlateRigidity(const Material& m, std::source_location where) {
  return PlaneStressFactor(m, where) * m.A * m.A / 12;
}

Materials ReadMaterials(const std::string& path, int limit, MaterialPart part, std::source_location where) {
  ItemReader file(path, where);
  const int count = ReadMaterialCount(file, where);
  if (count < 0 || count > limit) {
    throw Failure(
        error::SubscriptOutOfRange,
        file.Describe("number of materials") + " is " + std::to_string(count) + ", not in 0.." + std::to_string(limit),
        where);
  }
  file.ExpectItems(count, 12, "materials", where);
  Materials materials;
  for (int m = 1; m <= count; ++m) materials.MaterialTable.push_back(ReadMaterial(file));
  if (part == MaterialPart::FieldsAndSprings) {
    file.ExpectItems(count, 36, "spring matrices", where);
    materials.SpringTable.resize(1);
    for (int m = 1; m <= count; ++m) materials.SpringTable.push_back(ReadSpring(file));
  }
  return materials;
}

const Material& LoadMaterial(Materials& materials, int m, std::source_location where) {
  if (m == materials.activeNumber && m != 0) return materials.active;
  if (m < 1 || m > materials.Count()) {
    throw Failure(error::SubscriptOutOfRange,
                  "material " + std::to_string(m) + " of an element is not one of the " +
                      std::to_string(materials.Count()) + " materials of the model",
                  where);
  }
  materials.active = materials.MaterialTable[static_cast<std::size_t>(m)];
  materials.activeNumber = m;
  return materials.active;
}

}  // namespace velmor
