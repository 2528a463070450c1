// What filters select of the indications that a provider hands over.
#include "BrokerFixture.h"

namespace ZebManager {
namespace {

using Filters = BrokerFixture;

TEST_F(Filters, SelectByClass) {
  CMPIArray* projection = nullptr;
  CMPISelectExp* filter = face->eft->newSelectExp(face, "select * from A_Port", "WQL", &projection, &status);
  ASSERT_NE(filter, nullptr);
  EXPECT_EQ(text(filter->ft->getString(filter, &status)), "select * from A_Port");
  EXPECT_TRUE(filter->ft->evaluate(filter, newInstance("A_SubPort"), &status));
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  EXPECT_FALSE(filter->ft->evaluate(filter, newInstance("A_Other"), &status));
  EXPECT_EQ(filter->ft->getDOC(filter, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(filter->ft->getCOD(filter, &status), nullptr);
  EXPECT_FALSE(filter->ft->evaluateUsingAccessor(filter, nullptr, nullptr, &status));
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  CMPISelectExp* clone = filter->ft->clone(filter, &status);
  EXPECT_TRUE(clone->ft->evaluate(clone, newInstance(), &status));
  clone->ft->release(clone);
}

TEST_F(Filters, SelectByCondition) {
  CMPISelectExp* filter =
      face->eft->newSelectExp(face, "SELECT Name FROM A_Port WHERE Small = 5", "WQL", nullptr, &status);
  ASSERT_NE(filter, nullptr);
  CMPIInstance* const port = newInstance();
  EXPECT_FALSE(filter->ft->evaluate(filter, port, &status));
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  const CMPIValue five = uint16Value(5);
  port->ft->setProperty(port, "Small", &five, CMPI_uint16);
  EXPECT_TRUE(filter->ft->evaluate(filter, port, &status));
}

TEST_F(Filters, WhatIsNoQueryIsRefused) {
  for (const char* query : {"", "SELECT", "SELECT *", "SELECT FROM A", "SELECT * FROM", "DELETE * FROM A",
                            "SELECT * FROM A WHERE", "SELECT * FROM A ORDER BY B"}) {
    EXPECT_EQ(face->eft->newSelectExp(face, query, "WQL", nullptr, &status), nullptr) << query;
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_QUERY);
  }
}

}  // namespace
}  // namespace ZebManager
