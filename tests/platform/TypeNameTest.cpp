#include <CommandProcessor/platform/TypeName.h>

#include <gtest/gtest.h>

namespace texaspoker {
struct Chip {};
}  // namespace texaspoker

namespace other::poker {
struct Chip {};
}  // namespace other::poker

namespace poker {

struct TypeNameCommand {};
template <class... T>
struct TypeNamePool {
  struct Slot {};
};

namespace {

TEST(TypeName, DropsOurNamespaceEverywhereAndNoOther) {
  EXPECT_EQ(readableTypeName(typeid(TypeNameCommand)), "TypeNameCommand");
  EXPECT_EQ(readableTypeName(typeid(TypeNamePool<TypeNameCommand, TypeNamePool<TypeNameCommand*>>::Slot)),
            "TypeNamePool<TypeNameCommand, TypeNamePool<TypeNameCommand*> >::Slot");
  EXPECT_EQ(readableTypeName(typeid(TypeNamePool<texaspoker::Chip, other::poker::Chip>)),
            "TypeNamePool<texaspoker::Chip, other::poker::Chip>");
  EXPECT_EQ(readableTypeName(typeid(int)), "int");
}

}  // namespace
}  // namespace poker
