// A program that adds Clients rows through the recordset, one Update each,
// and prints the number of every row once its Update has returned. The
// crash test kills it at random moments; the sharing test runs two at once.
//
// Usage: db_writer CONNECTION_STRING TAG COUNT   (COUNT 0: until killed)

#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/runtime/RuntimeError.h"

#include <QCoreApplication>
#include <cstdio>

using namespace tessaly::db;

namespace {

// The nine written fields of a client; a whole row holds the same text in each.
const char* const ClientFields[] = {"Client",   "Address", "Area", "Town",   "County",
                                    "PostCode", "Email",   "Tel",  "Contact"};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: db_writer CONNECTION_STRING TAG COUNT\n");
        return 2;
    }
    const QString connectionString = QString::fromLocal8Bit(argv[1]);
    const QString tag = QString::fromLocal8Bit(argv[2]);
    const long count = std::strtol(argv[3], nullptr, 10);
    try {
        Connection connection;
        connection.Open(connectionString);
        for (long i = 1; count == 0 || i <= count; ++i) {
            Recordset rs;
            rs.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=0));"), connection,
                    adOpenDynamic, adLockOptimistic, adCmdText);
            rs.AddNew();
            // A long value makes each row span more of the file's pages.
            const QString value = QStringLiteral("%1-%2-").arg(tag).arg(i) + QString(200, QLatin1Char('x'));
            for (const char* field : ClientFields)
                rs.Fields(QLatin1String(field)) = value;
            rs.Update();
            rs.Close();
            std::printf("%ld\n", i);
            std::fflush(stdout);
        }
    } catch (const tessaly::RuntimeError& e) {
        std::fprintf(stderr, "%d %s\n", e.number(), qPrintable(e.description()));
        return 1;
    }
    return 0;
}
