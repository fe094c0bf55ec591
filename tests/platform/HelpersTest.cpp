#include <Language.h>
#include <VexaLog.h>

#include <gtest/gtest.h>

TEST(Helpers, ContextAndScopedNamesComeFromSignatures)
{
    EXPECT_EQ(trExtractContext("virtual bool RootNode::getRowsRequest(const CMGetRowsRequest&)"), "RootNode");
    EXPECT_EQ(trExtractContext("bool Controller::plCreate(CMSetDataRequest, QString&, int&)"), "Controller");
    EXPECT_EQ(trExtractContext("QList<int> ns::Inner::f(QList<int>)"), "Inner");
    EXPECT_EQ(trExtractContext("int freeFunction(int)"), "");
    EXPECT_EQ(dbglog_scopedFunction("void PlayListWorker::on_setDataRequest(const CMSetDataRequest&)", "PlayLists"),
              "PlayListWorker::on_setDataRequest");
    EXPECT_EQ(dbglog_scopedFunction("virtual bool RootNode::getRowsRequest(const CMGetRowsRequest&)", "PlayLists"),
              "RootNode::getRowsRequest");
}

TEST(Helpers, UntranslatedTextsFallBackToTheSource)
{
    EXPECT_EQ(Language::ntr("Controller", "Cannot rename PlayQueue."), "Cannot rename PlayQueue.");
    EXPECT_FALSE(Language::installCatalogue("de", "/nonexistent/catalogue.qm"));
    EXPECT_EQ(Language::current(), "en");
}
