#pragma once

// The large project database of the benchmarks: clients, and three sites of
// each client, added by prepared inserts inside the caller's transaction.

#include <QSqlQuery>
#include <QString>

namespace tessaly::bench {

constexpr int SitesPerClient = 3;

// Clients 1 to `clients`, each with its nine written fields.
inline void addClients(QSqlQuery& q, int clients) {
    q.prepare(
        QStringLiteral("INSERT INTO Clients (Client, Address, Area, Town, County, PostCode, Email, Tel, "
                       "Contact) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    for (int i = 1; i <= clients; ++i) {
        for (const QString& v :
             {QStringLiteral("Client %1").arg(i), QStringLiteral("%1 High Street").arg(i),
              QStringLiteral("Area"), QStringLiteral("Truro"), QStringLiteral("Cornwall"),
              QStringLiteral("TR%1 1AA").arg(i % 30), QStringLiteral("c%1@example.com").arg(i),
              QStringLiteral("01872 %1").arg(i), QStringLiteral("Contact %1").arg(i)})
            q.addBindValue(v);
        q.exec();
    }
}

// Three sites of each of the clients 1 to `clients`, site i of client 1 + i / 3.
inline void addSites(QSqlQuery& q, int clients) {
    q.prepare(QStringLiteral("INSERT INTO Sites (ClientID, Site, Address, Town, PostCode, Comments) VALUES "
                             "(?, ?, ?, ?, ?, ?)"));
    for (int i = 0; i < clients * SitesPerClient; ++i) {
        q.addBindValue(1 + i / SitesPerClient);
        q.addBindValue(QStringLiteral("Site %1").arg(i));
        q.addBindValue(QStringLiteral("%1 Low Road").arg(i));
        q.addBindValue(QStringLiteral("Truro"));
        q.addBindValue(QStringLiteral("TR1 2BB"));
        q.addBindValue(QStringLiteral("Comments of site %1").arg(i));
        q.exec();
    }
}

} // namespace tessaly::bench
