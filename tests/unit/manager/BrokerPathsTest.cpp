// Every slot of the object paths that a provider gets from the broker.
#include "BrokerFixture.h"

namespace ZebManager {
namespace {

using Paths = BrokerFixture;

TEST_F(Paths, KeepNamesAndKeys) {
  CMPIObjectPath* path = newPath("A_Port", "one");
  EXPECT_EQ(text(path->ft->getNameSpace(path, &status)), "root/jxv");
  EXPECT_EQ(text(path->ft->getClassName(path, &status)), "A_Port");
  EXPECT_EQ(text(path->ft->getHostname(path, &status)), "");
  path->ft->setHostname(path, "server");
  path->ft->setNameSpace(path, "other");
  path->ft->setClassName(path, "A_SubPort");
  EXPECT_EQ(text(path), "//server/other:A_SubPort.Name=\"one\"");
  EXPECT_EQ(path->ft->getKeyCount(path, &status), 1U);
  const CMPIData key = path->ft->getKey(path, "nAME", &status);
  EXPECT_EQ(text(key), "one");
  EXPECT_EQ(key.type, CMPI_string);
  EXPECT_EQ(key.state, CMPI_keyValue);
  CMPIString* name = nullptr;
  EXPECT_EQ(text(path->ft->getKeyAt(path, 0, &name, &status)), "one");
  EXPECT_EQ(text(name), "Name");
  path->ft->getKeyAt(path, 1, nullptr, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  path->ft->getKey(path, "None", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(Paths, AKeySetTwiceIsReplacedInItsPlace) {
  CMPIObjectPath* path = newPath("A_Port", "one");
  const CMPIValue value = uint16Value(5);
  path->ft->addKey(path, "Number", &value, CMPI_uint16);
  path->ft->addKey(path, "NAME", reinterpret_cast<const CMPIValue*>("two"), CMPI_chars);
  EXPECT_EQ(text(path), "root/jxv:A_Port.Name=\"two\",Number=5");
}

TEST_F(Paths, KeysAreScalarsThatAreThere) {
  CMPIObjectPath* path = newPath();
  CMPIValue value{};
  value.array = face->eft->newArray(face, 1, CMPI_uint16, nullptr);
  EXPECT_EQ(path->ft->addKey(path, "K", &value, CMPI_uint16 | CMPI_ARRAY).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(path->ft->addKey(path, "K", nullptr, CMPI_string).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(path->ft->addKey(path, nullptr, &value, CMPI_uint16).rc, CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(path->ft->addKey(path, "K", &value, 4711).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(path->ft->getKeyCount(path, nullptr), 0U);
}

TEST_F(Paths, AReferenceKeyIsACopy) {
  CMPIObjectPath* end = newPath("A_Port", "one");
  CMPIObjectPath* link = newPath("A_Link");
  CMPIValue value{};
  value.ref = end;
  link->ft->addKey(link, "One", &value, CMPI_ref);
  end->ft->setHostname(end, "changed");
  EXPECT_EQ(text(link), R"(root/jxv:A_Link.One="root/jxv:A_Port.Name=\"one\"")");
}

TEST_F(Paths, HostAndNamespaceCanComeFromAnother) {
  CMPIObjectPath* source = newPath();
  source->ft->setHostname(source, "server");
  source->ft->setNameSpace(source, "elsewhere");
  CMPIObjectPath* path = newPath();
  EXPECT_EQ(path->ft->setNameSpaceFromObjectPath(path, source).rc, CMPI_RC_OK);
  EXPECT_EQ(text(path), "elsewhere:A_Port");
  EXPECT_EQ(path->ft->setHostAndNameSpaceFromObjectPath(path, source).rc, CMPI_RC_OK);
  EXPECT_EQ(text(path), "//server/elsewhere:A_Port");
  EXPECT_EQ(path->ft->setHostAndNameSpaceFromObjectPath(path, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Paths, QualifiersAreNotOffered) {
  CMPIObjectPath* path = newPath();
  path->ft->getClassQualifier(path, "Abstract", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  path->ft->getPropertyQualifier(path, "Name", "Key", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  path->ft->getMethodQualifier(path, "M", "Static", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  path->ft->getParameterQualifier(path, "M", "P", "In", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

}  // namespace
}  // namespace ZebManager
